// SPDX-License-Identifier: MIT
#include "image/image_file.h"

#include "core/whole_file.h"
#include "image/jpeg_reader.h"
#include "radar/gif_reader.h"

#include <utility>

namespace raincast {

namespace {

/// Shows the pixels where they are.
QImage imageOf(PlainPicture picture) {
    if (picture.isNull()) {
        return {};
    }
    const auto format = picture.isIndexed() ? QImage::Format_Indexed8 : QImage::Format_RGB32;
    auto owner = std::make_unique<PlainPicture>(std::move(picture));
    QImage image(
        owner->row(0), owner->size().width(), owner->size().height(), owner->bytesPerRow(), format,
        [](void* owned) { delete static_cast<PlainPicture*>(owned); }, owner.get()
    );
    if (image.isNull()) {
        return {};
    }
    const PlainPicture& owned = *owner.release();
    if (owned.isIndexed()) {
        image.setColorTable({owned.colours().begin(), owned.colours().end()});
    }
    return image;
}

std::optional<LoadedPicture> loadRadarPicture(const QString& file) {
    const Bitmap bitmap = LoadImageFile(file, kMostRadarPixels);
    return bitmap ? std::optional(LoadedPicture{bitmap, bitmap->size()}) : std::nullopt;
}

} // namespace

QImage decodeImage(const QByteArray& bytes, qint64 mostPixels) {
    const bool isJpeg = bytes.startsWith("\xFF\xD8");
    return imageOf(isJpeg ? readJpeg(bytes, mostPixels) : readGif(bytes, mostPixels));
}

Bitmap LoadImageFile(const QString& path, qint64 mostPixels) {
    const auto bytes = readWhole(path, mostPictureBytes(mostPixels));
    QImage image = bytes ? decodeImage(*bytes, mostPixels) : QImage();
    return image.isNull() ? nullptr : std::make_shared<QImage>(std::move(image));
}

PictureLoaders shownPictures() {
    return {loadRadarPicture, loadRadarPicture};
}

} // namespace raincast
