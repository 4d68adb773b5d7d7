// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace raincast {

/// Whether the bytes of a stored picture are all there, and no others: a GIF's blocks follow one
/// another to the trailer, a JPEG has its end marker. What the picture shows is not looked at, so
/// that thousands of frames are checked in a moment.
[[nodiscard]] bool isWholePicture(QByteArrayView bytes);

/// The bytes of a stored picture; empty when it is not there or not whole.
[[nodiscard]] QByteArray wholePictureIn(const QString& path);

} // namespace raincast
