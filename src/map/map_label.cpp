// SPDX-License-Identifier: MIT
#include "map/map_label.h"

#include "map/text_key.h"
#include "window/device_pixels.h"

#include <QCache>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QStaticText>
#include <QString>
#include <QtMath>

#include <algorithm>

namespace raincast {

namespace {

constexpr QColor kHalo(255, 255, 240);
constexpr int kMostUnits = 40;       // of a text; a name in a file may be of any length
constexpr int kKeptBytes = 16 << 20; // of pictures of texts: some thousand names
constexpr double kStandardDpi = 96;

QString oneShortLine(const QString& text) {
    const QString line = text.left(4 * kMostUnits).simplified();
    return line.size() <= kMostUnits ? line : line.left(kMostUnits - 1) + QChar(0x2026);
}

int haloWidth(const QPaintDevice& device) {
    return std::max(1, qRound(device.logicalDpiY() / kStandardDpi));
}

// The text once in each direction, and then the text itself. It is laid out once for all of them.
void drawInHalo(QPainter& painter, const QPoint& topLeft, int halo, const QStaticText& text) {
    painter.setPen(kHalo);
    for (int dy = -halo; dy <= halo; dy += halo) {
        for (int dx = -halo; dx <= halo; dx += halo) {
            painter.drawStaticText(topLeft + QPoint(dx, dy), text);
        }
    }
    painter.setPen(Qt::black);
    painter.drawStaticText(topLeft, text);
}

QImage pictureOf(const QString& line, const QFont& font, const QPaintDevice& device) {
    QStaticText text(line);
    text.setTextFormat(Qt::PlainText);
    text.prepare(QTransform(), font);
    const int halo = haloWidth(device);
    const QSize size(qCeil(text.size().width()), qCeil(text.size().height()));
    QImage picture(size + QSize(4 * halo, 2 * halo), QImage::Format_ARGB32_Premultiplied);
    setDensity(picture, device.logicalDpiY());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setFont(font);
    drawInHalo(painter, {2 * halo, halo}, halo, text);
    return picture;
}

} // namespace

QImage mapLabelPicture(const QPainter& painter, const QString& text) {
    static QCache<TextKey, QImage> pictures(kKeptBytes);
    const QString line = oneShortLine(text);
    if (line.isEmpty()) {
        return {};
    }
    const QPaintDevice& device = *painter.device();
    const TextKey key{device.logicalDpiY(), 0, painter.font(), line};
    if (const QImage* const kept = pictures.object(key)) {
        return *kept;
    }
    QImage picture = pictureOf(line, painter.font(), device);
    pictures.insert(key, new QImage(picture), static_cast<int>(picture.sizeInBytes()));
    return picture;
}

QSize roughLabelSize(const QPainter& painter, const QString& text) {
    const QFontMetrics metrics = painter.fontMetrics();
    const auto units = static_cast<int>(std::min<qsizetype>(text.size(), kMostUnits));
    const int halo = haloWidth(*painter.device());
    return {units * metrics.averageCharWidth() + 4 * halo, metrics.height() + 2 * halo};
}

QRect mapLabelBox(const QPoint& leftMiddle, const QSize& picture) {
    return {leftMiddle - QPoint(0, picture.height() / 2), picture};
}

void drawMapLabel(QPainter& painter, const QPoint& leftMiddle, const QString& text) {
    const QImage picture = mapLabelPicture(painter, text);
    painter.drawImage(mapLabelBox(leftMiddle, picture.size()).topLeft(), picture);
}

} // namespace raincast
