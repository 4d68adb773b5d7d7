// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

class QImage;
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

/// A line of text on a box of its own, legible over any picture, as the painter would write it;
/// null without a text. Those drawn last are kept: writing takes its time, and a loop says the same
/// at every step.
[[nodiscard]] QImage
textBoxPicture(const QPainter& painter, const QString& line, const TextBoxColours& colours = {});

/// Draws it from its top-left corner on.
void drawTextBox(
    QPainter& painter, const QPoint& topLeft, const QString& line,
    const TextBoxColours& colours = {}
);

/// Draws words in the middle of a rectangle, in such a box, on as many lines as its width asks for.
void drawBoxedText(QPainter& painter, const QRect& area, const QString& words);

} // namespace raincast
