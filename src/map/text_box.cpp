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

} // namespace raincast
