// SPDX-License-Identifier: MIT
#pragma once

class QPainter;
class QPoint;
class QString;

namespace raincast {

/// Draws a line of text from its top-left corner on, black on a white box of its own: legible over
/// any picture.
void drawTextBox(QPainter& painter, const QPoint& topLeft, const QString& line);

} // namespace raincast
