// SPDX-License-Identifier: MIT
#include "radar/image/image_file.h"

#include "core/whole_file.h"
#include "radar/image/gif_reader.h"
#include "radar/image/jpeg_check.h"

#include <QBuffer>
#include <QImageReader>

namespace raincast {

namespace {

// A file is read whole. No picture needs more bytes than this for each pixel, and for the rest of
// its file.
constexpr qint64 kMostBytesAPixel = 4;
constexpr qint64 kMostOtherBytes = qint64{1} << 20;

QImage readJpeg(const QByteArray& bytes, qint64 mostPixels) {
    if (!isSoundJpeg(bytes)) {
        return {};
    }
    // Qt's own limit is lower than ours.
    static const bool unlimited = (QImageReader::setAllocationLimit(0), true);
    Q_UNUSED(unlimited)
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

Bitmap LoadImageFile(const QString& path, qint64 mostPixels) {
    const qint64 mostBytes = kMostBytesAPixel * mostPixels + kMostOtherBytes;
    const auto bytes = readWhole(path, mostBytes);
    QImage image = bytes ? decodeImage(*bytes, mostPixels) : QImage();
    return image.isNull() ? nullptr : std::make_shared<QImage>(std::move(image));
}

} // namespace raincast
