// SPDX-License-Identifier: MIT
#pragma once

#include "radar/plain_picture.h"

#include <QByteArrayView>

namespace raincast {

/// Decodes the first image of a GIF. The picture is the logical screen, grown where the image
/// reaches over it. An image that covers its screen keeps one byte a pixel; otherwise the picture
/// has RGB pixels and is white around the image. Transparent pixels are white, and so are colours
/// that the file does not define.
///
/// A null picture when the bytes are no GIF, the first image is not whole or uses colours that the
/// file does not define, or the picture would have more than `mostPixels` pixels.
///
/// Source: CompuServe, Graphics Interchange Format, version 89a (1990).
[[nodiscard]] PlainPicture readGif(QByteArrayView bytes, qint64 mostPixels);

} // namespace raincast
