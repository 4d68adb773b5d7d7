// SPDX-License-Identifier: MIT
#include "radar/image_file.h"

#include "radar/gif_reader.h"
#include "radar/jpeg_check.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>

namespace raincast {

namespace {

// No picture of at most kMostImagePixels needs a larger file, and a file is read whole.
constexpr qint64 kMostFileBytes = 4 * kMostImagePixels;

QImage readJpeg(const QByteArray& bytes, qint64 mostPixels) {
    if (!isSoundJpeg(bytes)) {
        return {};
    }
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer, "jpeg");
    const QSize size = reader.size();
    if (size.isEmpty() || qint64{size.width()} * size.height() > mostPixels) {
        return {};
    }
    return reader.read().convertToFormat(QImage::Format_RGB32);
}

} // namespace

QImage decodeImage(const QByteArray& bytes, qint64 mostPixels) {
    if (bytes.startsWith("GIF8")) {
        return readGif(bytes, mostPixels);
    }
    if (bytes.startsWith("\xFF\xD8")) {
        return readJpeg(bytes, mostPixels);
    }
    return {};
}

Bitmap LoadImageFile(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > kMostFileBytes) {
        return nullptr;
    }
    QImage image = decodeImage(file.read(kMostFileBytes));
    return image.isNull() ? nullptr : std::make_shared<QImage>(std::move(image));
}

} // namespace raincast
