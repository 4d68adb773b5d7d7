// SPDX-License-Identifier: MIT
#pragma once

#include "page/item_placement.h"

class QSize;

namespace raincast {

/// The square at an item's bottom-right corner that resizes it.
[[nodiscard]] PageRectangle gripOf(const PageRectangle& item, int gripSize);

/// An item whose bottom-right corner is dragged by (dx, dy): it ends at the page's edges, and never
/// becomes narrower or lower than the grip, which wins.
[[nodiscard]] PageRectangle
resizedBy(const PageRectangle& item, int dx, int dy, const QSize& page, int gripSize);

/// An item that is dragged by (dx, dy): it stops at the page's edges, of which left and top win if
/// it is larger than the page.
[[nodiscard]] PageRectangle movedBy(const PageRectangle& item, int dx, int dy, const QSize& page);

} // namespace raincast
