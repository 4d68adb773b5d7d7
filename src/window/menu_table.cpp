// SPDX-License-Identifier: MIT
#include "window/menu_table.h"

#include <QtGlobal>

namespace raincast {

MenuTableRecord* MenuTableRecord::s_first = nullptr;

MenuTableRecord::MenuTableRecord(int id, std::span<const MenuRow> rows)
    : m_id(id), m_rows(rows), m_next(s_first) {
    if (!find(id).empty()) {
        qFatal("Two menus have the number %d", id);
    }
    s_first = this;
}

MenuTableRecord::~MenuTableRecord() {
    for (MenuTableRecord** link = &s_first; *link != nullptr; link = &(*link)->m_next) {
        if (*link == this) {
            *link = m_next;
            return;
        }
    }
}

std::span<const MenuRow> MenuTableRecord::find(int id) {
    for (const MenuTableRecord* record = s_first; record; record = record->m_next) {
        if (record->m_id == id) {
            return record->m_rows;
        }
    }
    return {};
}

} // namespace raincast
