// SPDX-License-Identifier: MIT
#pragma once

#include "nexrad/polar_scan.h"
#include "radar/catalogue/image_geometry.h"

#include <QByteArray>

#include <optional>

namespace raincast {

/// Where the frames of a scan's site lie on the earth.
[[nodiscard]] ImageGeometry frameGeometry(const PolarScan& scan, Range range, int detail = 1);

/// The picture of a scan as a product of the tree (which decides the size of map; a scan can stand
/// for several): the bytes of a GIF of 600 × 550 pixels. The colour of a pixel is that of the cell
/// that rasterise() gives it. Ground without echo is transparent white; an echo never is white.
[[nodiscard]] std::optional<QByteArray> renderFrame(const PolarScan& scan, Product as);

/// The same on a picture whose place on the earth and detail are given.
[[nodiscard]] std::optional<QByteArray>
renderFrame(const PolarScan& scan, Product as, const ImageGeometry& image);

/// A picture with nothing on it.
[[nodiscard]] std::optional<QByteArray> emptyFrame();

} // namespace raincast
