// SPDX-License-Identifier: MIT
#pragma once

#include "core/text.h"

#include <span>

namespace raincast {

/// One entry of a menu as data: a command, a separator or a submenu.
struct MenuRow {
    enum class Kind { command, separator, submenu };

    Kind kind = Kind::separator;
    int command = 0;
    const char* text = "";         ///< marked
    std::span<const MenuRow> rows; ///< of a submenu
    const char* key = "";          ///< that does the same; see menuEntry()
};

/// `key`, in QKeySequence's portable form, is one that whoever takes the command listens to by
/// itself, as an item of a page does: the entry shows it and does nothing with it.
constexpr MenuRow menuEntry(int command, const char* text, const char* key = "") {
    return {MenuRow::Kind::command, command, text, {}, key};
}

constexpr MenuRow menuSeparator() {
    return {};
}

constexpr MenuRow subMenu(const char* text, std::span<const MenuRow> rows) {
    return {MenuRow::Kind::submenu, 0, text, rows, ""};
}

/// A key that stands for a command, in QKeySequence's portable form ("Ctrl+Q").
struct AcceleratorRow {
    const char* key;
    int command;
};

/// Publishes a menu under its number for as long as it lives; to be a static object. The rows are
/// those of a bar: a menu that others merge into theirs has one row, the submenu that is merged.
/// Two menus of one number are a fatal error.
class MenuTableRecord {
public:
    MenuTableRecord(int id, std::span<const MenuRow> rows);
    ~MenuTableRecord();
    MenuTableRecord(const MenuTableRecord&) = delete;
    MenuTableRecord& operator=(const MenuTableRecord&) = delete;

    /// The published rows of a menu; empty for a number that no menu has.
    [[nodiscard]] static std::span<const MenuRow> find(int id);

private:
    int m_id;
    std::span<const MenuRow> m_rows;
    MenuTableRecord* m_next;
    static MenuTableRecord* s_first;
};

} // namespace raincast
