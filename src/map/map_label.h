// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QRect>
#include <QString>

class QPainter;

namespace raincast {

/// A short text on a map. Its middle line starts at `leftMiddle`.
struct MapLabel {
    QPoint leftMiddle;
    QString text;
};

/// The picture of such a text, dark in a light halo so that it can be read on any map: on one line,
/// cut to a few words' length, as the painter would write it. Null without a text. Some thousand
/// are kept, for drawing a text in its halo takes its time, and a map is drawn again at every move.
[[nodiscard]] QImage mapLabelPicture(const QPainter& painter, const QString& text);

/// How wide that picture is, roughly, and how high: told without drawing the text.
[[nodiscard]] QSize roughLabelSize(const QPainter& painter, const QString& text);

/// Where a label's picture of that size lies.
[[nodiscard]] QRect mapLabelBox(const QPoint& leftMiddle, const QSize& picture);

/// Writes a text on a map.
void drawMapLabel(QPainter& painter, const QPoint& leftMiddle, const QString& text);

} // namespace raincast
