// SPDX-License-Identifier: MIT
#include "map/text_box.h"

#include <QFontMetrics>
#include <QPainter>

namespace raincast {

void drawTextBox(
    QPainter& painter, const QPoint& topLeft, const QString& line, const TextBoxColours& colours
) {
    const QFontMetrics metrics = painter.fontMetrics();
    const QRect box(topLeft, QSize(metrics.horizontalAdvance(line), metrics.height()));
    painter.fillRect(box, colours.ground);
    painter.setPen(colours.ink);
    painter.drawText(topLeft + QPoint(0, metrics.ascent()), line);
}

void drawBoxedText(QPainter& painter, const QRect& area, const QString& words) {
    constexpr int kFlags = Qt::AlignCenter | Qt::TextWordWrap;
    const QRect box = painter.boundingRect(area, kFlags, words);
    painter.fillRect(box, Qt::white);
    painter.setPen(Qt::black);
    painter.drawText(box, kFlags, words);
}

} // namespace raincast
