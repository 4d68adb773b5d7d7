// SPDX-License-Identifier: MIT
#include "map/text_box.h"

#include <QFontMetrics>
#include <QPainter>

namespace raincast {

void drawTextBox(QPainter& painter, const QPoint& topLeft, const QString& line) {
    const QFontMetrics metrics = painter.fontMetrics();
    const QRect box(topLeft, QSize(metrics.horizontalAdvance(line), metrics.height()));
    painter.fillRect(box, Qt::white);
    painter.setPen(Qt::black);
    painter.drawText(topLeft + QPoint(0, metrics.ascent()), line);
}

} // namespace raincast
