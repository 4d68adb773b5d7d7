// SPDX-License-Identifier: MIT
#include "reading/text_picture.h"

#include "map/text_key.h"
#include "window/device_pixels.h"

#include <QCache>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QtMath>

namespace raincast {

namespace {

constexpr int kMargin = 3;
constexpr int kKept = 50;

QImage drawn(const QPainter& like, const QString& text, int mostWidth) {
    constexpr int kFlags = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap;
    constexpr int kAnyHeight = 10'000;
    const QRect room(kMargin, kMargin, mostWidth - 2 * kMargin, kAnyHeight);
    const QRect needed = like.fontMetrics().boundingRect(room, kFlags, text);
    QImage picture(
        needed.width() + 2 * kMargin, needed.height() + 2 * kMargin, QImage::Format_RGB32
    );
    setDensity(picture, like.device()->logicalDpiY());
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setFont(like.font());
    painter.drawRect(picture.rect().adjusted(0, 0, -1, -1));
    painter.drawText(needed.translated(kMargin - needed.left(), 0), kFlags, text);
    return picture;
}

} // namespace

QImage textPicture(const QPainter& painter, const QString& text, int mostWidth) {
    static QCache<TextKey, QImage> pictures(kKept);
    const TextKey key{painter.device()->logicalDpiY(), mostWidth, painter.font(), text};
    if (const QImage* const kept = pictures.object(key)) {
        return *kept;
    }
    const QImage picture = drawn(painter, text, mostWidth);
    pictures.insert(key, new QImage(picture));
    return picture;
}

} // namespace raincast
