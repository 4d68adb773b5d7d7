// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>

namespace raincast {

/// Decodes the first image of a GIF. The picture is the logical screen, grown where the image
/// reaches over it. An image that covers its screen keeps one byte a pixel (Format_Indexed8, a
/// colour table of 256 entries); otherwise the result is Format_RGB32 and white around the image.
/// Transparent pixels are white.
///
/// A null image when the bytes are no GIF, the first image is not whole or uses colours that the
/// file does not define, or the picture would have more than `mostPixels` pixels.
///
/// Source: CompuServe, Graphics Interchange Format, version 89a (1990).
[[nodiscard]] QImage readGif(const QByteArray& bytes, qint64 mostPixels);

} // namespace raincast
