// SPDX-License-Identifier: MIT
#include "radar/file_kinds.h"

#include "core/text.h"
#include "geo/geo_reference.h"
#include "radar/bitmap.h"
#include "radar/gif_reader.h"
#include "radar/warning_texts.h"

namespace raincast {

namespace {

bool isGif(QByteArrayView first) {
    return first == "GIF87a" || first == "GIF89a";
}

// The start of the image, and the first byte of another marker.
bool isJpeg(QByteArrayView first) {
    return first == "\xFF\xD8\xFF";
}

// More than the limits of size let through: only the whole file shows these.
constexpr qsizetype kAllBytes = qsizetype{1} << 30;

bool isSoundGif(QByteArrayView all) {
    return !readGif(all, kMostRadarPixels).isNull();
}

bool isWarningTexts(QByteArrayView first) {
    return readWarningTexts(first.toByteArray()).has_value();
}

bool isWorldFile(QByteArrayView first) {
    return GeoReference::isWorldFile({first.data(), static_cast<std::size_t>(first.size())});
}

} // namespace

const FileKind kGifFile{Text::marked("GIF image"), 6, isGif, false};
const FileKind kJpegFile{Text::marked("JPEG image"), 3, isJpeg, false};
const FileKind kSoundGifFile{Text::marked("sound GIF image"), kAllBytes, isSoundGif, true};
const FileKind kWarningTextsFile{
    Text::marked("texts of warnings"), kMostWarningTextBytes, isWarningTexts, true};
const FileKind kWorldFile{
    Text::marked("world file"), GeoReference::kWorldFileBytes, isWorldFile, true};

} // namespace raincast
