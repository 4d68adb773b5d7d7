// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

class QPainter;
class QPoint;
class QRect;
class QString;

namespace raincast {

/// How a text is written over a picture.
struct TextBoxColours {
    QColor ground = {255, 255, 255};
    QColor ink = {0, 0, 0};
};

/// Draws a line of text from its top-left corner on, on a box of its own: legible over any picture.
void drawTextBox(
    QPainter& painter, const QPoint& topLeft, const QString& line,
    const TextBoxColours& colours = {}
);

/// Draws words in the middle of a rectangle, in such a box, on as many lines as its width asks for.
void drawBoxedText(QPainter& painter, const QRect& area, const QString& words);

} // namespace raincast
