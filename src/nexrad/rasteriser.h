// SPDX-License-Identifier: MIT
#pragma once

#include "image/indexed_picture.h"
#include "nexrad/polar_scan.h"
#include "radar/catalogue/image_geometry.h"

namespace raincast {

/// The colour level (0 to 15) of every pixel: that of the cell under its centre, as
/// scan_placement.h places it; 0 beside all cells. In a sharp picture a pixel shows the strongest
/// of the cells of a radial that lie in it where these are smaller than pixels: none is lost. A
/// scan whose tables do not fit its cells (rows × columns, a radial for each row) is a scan without
/// cells.
[[nodiscard]] IndexedPicture rasterise(const PolarScan& scan, const ImageGeometry& image);

} // namespace raincast
