// SPDX-License-Identifier: MIT
#pragma once

#include "geo/view_transform.h"

#include <QtCore/qnamespace.h>

#include <optional>

namespace raincast {

class CPageDisplay;

/// What the stylus (the left mouse button, a finger) does on a page: in layout mode it chooses,
/// moves and resizes items, in browse mode it is handed to the topmost item that captures it, and
/// held still for 600 ms it opens an item's menu.
/// Places are device pixels of the page.
class PageStylus {
public:
    /// The timer of the page's window by which the stylus is held.
    static constexpr int kHoldTimer = 1;
    static constexpr int kHoldMilliseconds = 100;
    static constexpr int kHolds = 6;

    explicit PageStylus(CPageDisplay& page);

    /// Forgets a press that is under way.
    void reset();

    enum class Press {
        first,
        second ///< at once after the first, in the same place
    };
    void down(PagePoint place, Qt::KeyboardModifiers keys, Press press);
    void move(PagePoint place);
    void up(PagePoint place);
    /// The press that is under way will not be lifted and is not a tap.
    void lose();
    /// The timer is due.
    void hold();
    /// The right button went down.
    void openMenu(PagePoint place);

    /// The side of the square that resizes an item: 12 pixels, 24 on a high-resolution screen.
    [[nodiscard]] int gripSize() const { return m_gripSize; }

private:
    enum class Drag { none, moves, resizes, captured };

    [[nodiscard]] Drag layoutDrag(PagePoint place) const;
    void startHold(PagePoint place);
    void endHold();

    CPageDisplay& m_page;
    int m_gripSize;
    Drag m_drag = Drag::none;
    PagePoint m_last;
    PagePoint m_pressed;
    std::optional<int> m_holds; // of the timer, while a press may become a menu
};

} // namespace raincast
