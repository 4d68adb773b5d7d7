// SPDX-License-Identifier: MIT
// Pictures from a server: whatever the bytes, decoding ends, stays within its limit and gives a
// picture that can be composited.
#include "image/composite.h"
#include "image/image_file.h"

#include <QByteArray>

#include <cstdlib>

namespace {

// A frame's, and no more: the fuzzer then tries many pictures instead of few large ones.
constexpr qint64 kMostPixels = qint64{raincast::kRadarImageWidth} * raincast::kRadarImageHeight;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const QImage image = raincast::decodeImage(bytes, kMostPixels);
    if (qint64{image.width()} * image.height() > kMostPixels) {
        std::abort();
    }
    raincast::Bitmap target;
    raincast::CompositeOnto(target, image, 8, 8);
    raincast::Bitmap frame = std::make_shared<QImage>(image);
    raincast::CompositeOnto(frame, image, 8, 8);
    return 0;
}
