// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>

#include <functional>
#include <optional>

namespace raincast {

/// The rows of a picture from a row on, as many as there are at a time: ARGB32, premultiplied or
/// not.
using BandAt = std::function<QImage(int top)>;

/// The GIF of a picture of 600 × 550 pixels, or of `detail` times as many each way, with
/// transparency: pixels less than half covered are transparent ground, all others opaque. Up to 255
/// colours are kept as they are; more are reduced, for which the bands are asked for once more.
/// Nothing only when there is no memory.
[[nodiscard]] std::optional<QByteArray> layerGif(int detail, const BandAt& bandAt);

} // namespace raincast
