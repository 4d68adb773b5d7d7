// SPDX-License-Identifier: MIT
#include "window/menu_merger.h"

#include "window/command_set.h"

#include <QAction>
#include <QMenu>

#include <utility>

namespace raincast {

namespace {

// The menu, or submenu of it, that an entry stands in.
QMenu* menuOf(QMenu& menu, QAction* entry) {
    if (menu.actions().contains(entry)) {
        return &menu;
    }
    for (const QAction* other : menu.actions()) {
        auto* const submenu = other->menu<QMenu*>();
        if (QMenu* const found = submenu ? menuOf(*submenu, entry) : nullptr) {
            return found;
        }
    }
    return nullptr;
}

QAction* entryAfter(const QMenu& menu, QAction* entry) {
    return menu.actions().value(menu.actions().indexOf(entry) + 1);
}

} // namespace

void MenuMerger::DeleteLater::operator()(QMenu* menu) const {
    menu->deleteLater();
}

MenuMerger::~MenuMerger() {
    unmerge();
}

void MenuMerger::add(std::unique_ptr<QMenu> menu) {
    m_menus.emplace_back(menu.release());
}

void MenuMerger::clear() {
    unmerge();
    m_menus.clear();
}

bool MenuMerger::merge(QMenu& target) {
    QAction* const placeholder = merged() ? nullptr : findCommand(target, m_placeholder);
    if (placeholder == nullptr) {
        return false;
    }
    m_target = menuOf(target, placeholder);
    m_placeholderEntry = placeholder;
    m_end = entryAfter(*m_target, placeholder);
    m_target->removeAction(placeholder);
    for (const auto& menu : m_menus) {
        if (const QMenu* const entries = firstSubmenu(*menu)) {
            insertEntries(*entries, m_end);
        }
    }
    return true;
}

void MenuMerger::insertEntries(const QMenu& menu, QAction* before) {
    for (QAction* entry : menu.actions().mid(0, kMostEntries)) {
        if (m_target->actions().contains(entry)) {
            continue;
        }
        if (entry->text().size() > kMostCharacters) {
            entry->setText(entry->text().left(kMostCharacters));
        }
        m_target->insertAction(before, entry);
        m_entries.emplace_back(entry);
    }
}

void MenuMerger::unmerge() {
    const QPointer<QMenu> target = std::exchange(m_target, nullptr);
    const auto entries = std::exchange(m_entries, {});
    if (!target) {
        return;
    }
    // Before the first entry, since what stood after the last one may have been a placeholder too.
    QAction* place = m_end;
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) {
        place = *entry ? entry->data() : place;
    }
    if (m_placeholderEntry) {
        m_placeholderEntry->setText(QStringLiteral("-"));
        m_placeholderEntry->setEnabled(false);
        target->insertAction(place, m_placeholderEntry);
    }
    for (const QPointer<QAction>& entry : entries) {
        if (entry) {
            target->removeAction(entry);
        }
    }
}

} // namespace raincast
