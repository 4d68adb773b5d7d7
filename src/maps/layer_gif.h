// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <optional>

class QImage;

namespace raincast {

/// The GIF of a picture of 600 × 550 pixels, or of 2 or 4 times as many each way, with
/// transparency: pixels less than half covered are transparent ground, all others opaque. Up to 255
/// colours are kept as they are; more are reduced. Nothing only when there is no memory.
[[nodiscard]] std::optional<QByteArray> layerGif(const QImage& picture);

} // namespace raincast
