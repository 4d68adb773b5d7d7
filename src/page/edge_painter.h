// SPDX-License-Identifier: MIT
#pragma once

class QPainter;
class QPalette;
class QRect;

namespace raincast {

/// Draws an edge of up to two one-pixel rings just inside a rectangle, lit from the top left.
/// `style` is a sum of EdgeStyle.
void drawEdge(QPainter& painter, const QRect& rectangle, int style, const QPalette& palette);

} // namespace raincast
