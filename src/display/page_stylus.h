// SPDX-License-Identifier: MIT
#pragma once

#include "geo/view_transform.h"

#include <QtCore/qnamespace.h>

namespace raincast {

class CPageDisplay;

/// What the stylus (the left mouse button, a finger) does on a page: in layout mode it chooses,
/// moves and resizes items, in browse mode it is handed to the topmost item that captures it.
/// Places are device pixels of the page.
class PageStylus {
public:
    explicit PageStylus(CPageDisplay& page);

    /// Forgets a drag that is under way.
    void reset() { m_drag = Drag::none; }

    void down(PagePoint place, Qt::KeyboardModifiers keys);
    void move(PagePoint place);
    void up(PagePoint place);

    /// The side of the square that resizes an item: 12 pixels, 24 on a high-resolution screen.
    [[nodiscard]] int gripSize() const { return m_gripSize; }

private:
    enum class Drag { none, moves, resizes, captured };

    [[nodiscard]] Drag layoutDrag(PagePoint place) const;

    CPageDisplay& m_page;
    int m_gripSize;
    Drag m_drag = Drag::none;
    PagePoint m_last;
};

} // namespace raincast
