// SPDX-License-Identifier: MIT
#include "page/page.h"

#include "page/page_type.h"
#include "persist/record_reader.h"
#include "persist/record_writer.h"
#include "window/command_set.h"
#include "window/commands.h"
#include "window/menu_merger.h"
#include "window/one_line.h"

#include <QMenu>

#include <algorithm>
#include <cstdint>
#include <utility>

namespace raincast {

CAppPaged::Page::Page(const PageType* pageType) : m_pageType(pageType) {}

CAppPaged::Page::~Page() {
    unmergeMenus();
}

bool CAppPaged::Page::Read(CSerialReader& reader) {
    CRecordReader record(reader);
    record.string(m_name);
    std::uint8_t enabled = m_enabled ? 1 : 0;
    record.valueWithin<std::uint8_t>(enabled, 0, 1);
    m_enabled = enabled != 0;
    record.end();
    return true;
}

bool CAppPaged::Page::Write(CSerialWriter& writer) const {
    CRecordWriter record(writer);
    record.string(m_name);
    record.value<std::uint8_t>(m_enabled ? 1 : 0);
    return record.end();
}

bool CAppPaged::Page::command(int /*id*/, int /*notification*/) {
    return false;
}

void CAppPaged::Page::contentChanged() {}
void CAppPaged::Page::size(int /*width*/, int /*height*/) {}

bool CAppPaged::Page::keyDown(int /*key*/) {
    return false;
}

bool CAppPaged::Page::character(char16_t /*unit*/) {
    return false;
}

void CAppPaged::Page::menuPopUp(QMenu& /*menu*/) {}

bool CAppPaged::Page::zoom(int /*steps*/, const QPoint& /*place*/) {
    return false;
}

QString CAppPaged::Page::shownName() const {
    const bool named = !m_name.isEmpty() || m_pageType == nullptr;
    // The program's own name for it stands in the file in English.
    const bool own = m_pageType != nullptr && (!named || m_name == m_pageType->name());
    return oneLine(own ? Text::of(m_pageType->name()) : m_name);
}

void CAppPaged::Page::addMenu(int menuId) {
    if (menuId != 0 && std::find(m_menus.begin(), m_menus.end(), menuId) == m_menus.end()) {
        m_menus.push_back(menuId);
        menusChanged();
    }
}

void CAppPaged::Page::removeMenu(int menuId) {
    const auto found = std::find(m_menus.begin(), m_menus.end(), menuId);
    if (found != m_menus.end()) {
        m_menus.erase(found);
        menusChanged();
    }
}

void CAppPaged::Page::menusChanged() {
    if (m_merged != nullptr && m_pageMenu) {
        CommandSet& commands = *m_commands;
        QMenu& pageMenu = *m_pageMenu;
        unmergeMenus();
        mergeMenus(commands, pageMenu);
    }
}

void CAppPaged::Page::mergeMenus(CommandSet& commands, QMenu& pageMenu) {
    m_commands = &commands;
    m_pageMenu = &pageMenu;
    m_merged = std::make_unique<MenuMerger>(kPageEntriesPlace);
    for (const int menuId : m_menus) {
        m_merged->add(commands.load(menuId));
    }
    m_merged->merge(pageMenu);
}

void CAppPaged::Page::unmergeMenus() {
    m_merged.reset();
    m_commands = nullptr;
    m_pageMenu = nullptr;
}

} // namespace raincast
