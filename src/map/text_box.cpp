// SPDX-License-Identifier: MIT
#include "map/text_box.h"

#include "map/text_key.h"
#include "window/device_pixels.h"

#include <QCache>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>

namespace raincast {

namespace {

constexpr int kKeptTextBytes = 1 << 20;

struct TextBoxKey {
    TextKey text;
    QRgb ground;
    QRgb ink;

    friend bool operator==(const TextBoxKey&, const TextBoxKey&) = default;
    friend std::size_t qHash(const TextBoxKey& key, std::size_t seed) {
        return qHashMulti(qHash(key.text, seed), key.ground, key.ink);
    }
};

QImage written(const QPainter& painter, const QString& line, const TextBoxColours& colours) {
    const QFontMetrics metrics = painter.fontMetrics();
    QImage picture(metrics.horizontalAdvance(line), metrics.height(), QImage::Format_RGB32);
    if (picture.isNull()) {
        return picture;
    }
    setDensity(picture, painter.device()->logicalDpiY());
    picture.fill(colours.ground);
    QPainter writer(&picture);
    writer.setFont(painter.font());
    writer.setPen(colours.ink);
    writer.drawText(QPoint(0, metrics.ascent()), line);
    return picture;
}

} // namespace

QImage textBoxPicture(const QPainter& painter, const QString& line, const TextBoxColours& colours) {
    static QCache<TextBoxKey, QImage> pictures(kKeptTextBytes);
    const TextKey text{painter.device()->logicalDpiY(), 0, painter.font(), line};
    const TextBoxKey key{text, colours.ground.rgb(), colours.ink.rgb()};
    if (const QImage* const kept = pictures.object(key)) {
        return *kept;
    }
    QImage picture = written(painter, line, colours);
    pictures.insert(key, new QImage(picture), static_cast<int>(picture.sizeInBytes()));
    return picture;
}

void drawTextBox(
    QPainter& painter, const QPoint& topLeft, const QString& line, const TextBoxColours& colours
) {
    painter.drawImage(topLeft, textBoxPicture(painter, line, colours));
}

void drawBoxedText(QPainter& painter, const QRect& area, const QString& words) {
    constexpr int kFlags = Qt::AlignCenter | Qt::TextWordWrap;
    const QRect box = painter.boundingRect(area, kFlags, words);
    painter.fillRect(box, Qt::white);
    painter.setPen(Qt::black);
    painter.drawText(box, kFlags, words);
}

} // namespace raincast
