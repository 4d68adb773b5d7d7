// SPDX-License-Identifier: MIT
#pragma once

#include "image/indexed_picture.h"

#include <QByteArray>
#include <QRgb>

#include <optional>
#include <span>

namespace raincast {

/// The bytes of a GIF (89a). Index 0 is transparent; every index in the picture must be one of the
/// 2 to 256 colours. Nothing only when there is no memory.
[[nodiscard]] std::optional<QByteArray>
writeGif(const IndexedPicture& picture, std::span<const QRgb> colours);

} // namespace raincast
