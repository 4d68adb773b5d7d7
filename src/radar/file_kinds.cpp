// SPDX-License-Identifier: MIT
#include "radar/file_kinds.h"

#include "geo/geo_reference.h"

namespace raincast {

namespace {

bool isGif(QByteArrayView first) {
    return first == "GIF87a" || first == "GIF89a";
}

// The start of the image, and the first byte of another marker.
bool isJpeg(QByteArrayView first) {
    return first == "\xFF\xD8\xFF";
}

bool isWorldFile(QByteArrayView first) {
    return GeoReference::isWorldFile({first.data(), static_cast<std::size_t>(first.size())});
}

} // namespace

const FileKind kGifFile{"GIF image", 6, isGif, false};
const FileKind kJpegFile{"JPEG image", 3, isJpeg, false};
const FileKind kWorldFile{"world file", GeoReference::kWorldFileBytes, isWorldFile, true};

} // namespace raincast
