// SPDX-License-Identifier: MIT
#pragma once

#include "radar/bitmap.h"
#include "radar/picture_loader.h"

#include <QImage>
#include <QString>

namespace raincast {

/// Loads a GIF (87a, 89a; the first image of several) or a JPEG; the file's content decides which.
/// GIF pixels stay one byte each where the image covers its screen, as every published radar image
/// does. Transparent pixels become white: published overlays use black as the transparent colour.
///
/// Null when the file cannot be read, is of another kind, is defective or cut off, or has more than
/// `mostPixels` pixels. A GIF whose first image is whole loads even if its trailer is missing; a
/// JPEG needs its end marker and at most kMostJpegScans scans.
[[nodiscard]] Bitmap LoadImageFile(const QString& path, qint64 mostPixels = kMostImagePixels);

/// The same from the file's bytes. A null image on failure.
[[nodiscard]] QImage decodeImage(const QByteArray& bytes, qint64 mostPixels = kMostImagePixels);

/// Loads pictures of the cache as they are shown; none of more than kMostRadarPixels.
[[nodiscard]] PictureLoaders shownPictures();

} // namespace raincast
