// SPDX-License-Identifier: MIT
#pragma once

#include "window/menu_table.h"

#include <memory>
#include <unordered_map>

class QAction;
class QMenu;
class QMenuBar;
class QWidget;

namespace raincast {

/// The commands of a window: one QAction each, which serves every menu, the toolbar and the keys
/// and holds the command's text and its checked and enabled states. Using it sends the command to
/// the window; opening a menu that was made here sends the window a MenuPopupEvent first.
///
/// The actions belong to the window and live as long as it does; this object and the menus made
/// by it may go before.
class CommandSet {
public:
    explicit CommandSet(QWidget& window) : m_window(window) {}

    /// The action of a command, made on first need (and then without a text).
    [[nodiscard]] QAction& action(int command);

    /// Adds entries to the end of a menu or menu bar. A command that has no text yet gets the
    /// entry's.
    void fill(QMenu& menu, std::span<const MenuRow> rows);
    void fill(QMenuBar& bar, std::span<const MenuRow> rows);

    /// A published menu, to be merged into another one; an empty one for an unknown number.
    [[nodiscard]] std::unique_ptr<QMenu> load(int menuId);

    /// Gives commands their keys, in any window state and whatever menus there are. A command may
    /// have several.
    void addKeys(std::span<const AcceleratorRow> rows);

private:
    template<typename Menu>
    void fillAny(Menu& menu, std::span<const MenuRow> rows);
    void watch(QMenu& menu);

    QWidget& m_window;
    std::unordered_map<int, QAction*> m_actions;
};

/// The number of an action's command; 0 for a separator or submenu.
[[nodiscard]] int commandOf(const QAction& action);

/// The entry of a command in a menu or menu bar or, depth first, in a submenu; null if there is
/// none.
[[nodiscard]] QAction* findCommand(const QWidget& menu, int command);

/// The first submenu of a menu or menu bar; null without one.
[[nodiscard]] QMenu* firstSubmenu(const QWidget& menu);

/// Greys or checks the entry of a command in a menu; nothing without one.
void enableCommand(const QWidget& menu, int command, bool enabled);
void checkCommand(const QWidget& menu, int command, bool checked);

} // namespace raincast
