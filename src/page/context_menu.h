// SPDX-License-Identifier: MIT
#pragma once

#include "page/page_display.h"
#include "window/menu_table.h"

#include <QPointer>

#include <memory>
#include <span>

class QMenu;

namespace raincast {

class CommandSet;

/// The menu that an item offers for a place on a page. What the user chooses of it becomes a
/// command for that item.
class CPageDisplay::ContextMenu {
public:
    explicit ContextMenu(CPageDisplay& page);
    ~ContextMenu();

    enum class By { heldPress, rightButton };

    /// Opens the menu of the topmost item at a place that offers one; false if none does. The menu
    /// stays open when this returns; the page must have a window.
    bool open(PagePoint place, By by);

    /// A command of the page's window: hands it to the item whose menu was opened last, unless the
    /// item is gone.
    void command(int id);

    /// An item goes: it gets no command any more.
    void forget(const CItem& item);

    /// The page's window is new: what was open went with the former one.
    void reset();

private:
    void popUp(std::span<const MenuRow> rows, const QString& heading, PagePoint place, By by);

    CPageDisplay& m_page;
    CItem* m_item = nullptr;
    std::unique_ptr<CommandSet> m_commands;
    QPointer<QMenu> m_menu;
};

} // namespace raincast
