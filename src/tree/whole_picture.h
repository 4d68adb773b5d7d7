// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <optional>

namespace raincast {

/// Whether the bytes of a stored picture are all there, and no others: a GIF's blocks follow one
/// another to the trailer, a JPEG has its end marker. The picture is not decoded, so that thousands
/// of frames are checked in a moment.
[[nodiscard]] bool isWholePicture(QByteArrayView bytes);

/// The bytes of a stored picture; nothing when it is not there or not whole.
[[nodiscard]] std::optional<QByteArray> wholePictureIn(const QString& path);

} // namespace raincast
