// SPDX-License-Identifier: MIT
#include "gps/map_label.h"

#include <QCache>
#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QString>

#include <algorithm>

namespace raincast {

namespace {

constexpr QColor kHalo(255, 255, 240);
constexpr int kMostUnits = 40;      // of a text; a name in a file may be of any length
constexpr int kKeptBytes = 4 << 20; // of pictures of texts
constexpr double kStandardDpi = 96;

QString oneShortLine(const QString& text) {
    const QString line = text.left(4 * kMostUnits).simplified();
    return line.size() <= kMostUnits ? line : line.left(kMostUnits - 1) + QChar(0x2026);
}

int haloWidth(const QPaintDevice& device) {
    return std::max(1, qRound(device.logicalDpiY() / kStandardDpi));
}

// The text once in each direction, and then the text itself.
void drawInHalo(QPainter& painter, const QPoint& baseline, int halo, const QString& line) {
    painter.setPen(kHalo);
    for (int dy = -halo; dy <= halo; dy += halo) {
        for (int dx = -halo; dx <= halo; dx += halo) {
            painter.drawText(baseline + QPoint(dx, dy), line);
        }
    }
    painter.setPen(Qt::black);
    painter.drawText(baseline, line);
}

QImage pictureOf(const QString& line, const QFont& font, QPaintDevice& device) {
    const QFontMetrics metrics(font, &device);
    const int halo = haloWidth(device);
    const QSize size(metrics.horizontalAdvance(line) + 4 * halo, metrics.height() + 2 * halo);
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    picture.setDotsPerMeterX(qRound(device.logicalDpiX() / 0.0254));
    picture.setDotsPerMeterY(qRound(device.logicalDpiY() / 0.0254));
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setFont(font);
    drawInHalo(painter, {2 * halo, metrics.ascent() + halo}, halo, line);
    return picture;
}

} // namespace

void drawMapLabel(QPainter& painter, const QPoint& leftMiddle, const QString& text) {
    // Drawing a text nine times takes its time, and a map is drawn again at every move.
    static QCache<QString, QImage> pictures(kKeptBytes);
    const QString line = oneShortLine(text);
    if (line.isEmpty()) {
        return;
    }
    QPaintDevice& device = *painter.device();
    const QString key =
        QString::number(device.logicalDpiY()) + u' ' + painter.font().key() + u' ' + line;
    const QImage* picture = pictures.object(key);
    QImage drawn;
    if (picture == nullptr) {
        drawn = pictureOf(line, painter.font(), device);
        pictures.insert(key, new QImage(drawn), static_cast<int>(drawn.sizeInBytes()));
    }
    const QImage& shown = picture != nullptr ? *picture : drawn;
    painter.drawImage(leftMiddle - QPoint(0, shown.height() / 2), shown);
}

} // namespace raincast
