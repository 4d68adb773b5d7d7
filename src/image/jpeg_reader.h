// SPDX-License-Identifier: MIT
#pragma once

#include "radar/plain_picture.h"

#include <QByteArrayView>

namespace raincast {

/// Decodes a JPEG: grey, in colours, or of four inks as printers have them. The picture has RGB
/// pixels.
///
/// A null picture when the bytes are no sound JPEG (isSoundJpeg()), cannot be decoded, have other
/// parts of colour than those, or the picture would have more than `mostPixels` pixels.
[[nodiscard]] PlainPicture readJpeg(QByteArrayView bytes, qint64 mostPixels);

} // namespace raincast
