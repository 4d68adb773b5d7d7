// SPDX-License-Identifier: MIT
#pragma once

#include "page/page_display.h"

class QPainter;
class QPalette;

namespace raincast {

struct PageRectangle;

/// Draws an item with its fill, clip and edge. The painter's state is as before afterwards.
void paintItem(QPainter& painter, CPageDisplay::CItem& item, const QPalette& palette);

/// Draws what layout mode shows of an item: its outline, red if it is the selected one and green
/// if not, and the two strokes of the grip.
void paintLayoutMarks(QPainter& painter, const PageRectangle& item, bool selected, int gripSize);

} // namespace raincast
