// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/image_geometry.h"
#include "tree/warning_polygon.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace raincast {

/// The picture of warnings: outlines on transparent white, the bytes of a GIF of 600 × 550 pixels.
/// With `sample` it is marked as made up.
[[nodiscard]] std::optional<QByteArray> renderWarnings(
    const ImageGeometry& image, const std::vector<WarningPolygon>& warnings, bool sample
);

} // namespace raincast
