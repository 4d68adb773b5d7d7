// SPDX-License-Identifier: MIT
#pragma once

#include "image/indexed_picture.h"
#include "nexrad/polar_scan.h"
#include "radar/catalogue/image_geometry.h"

namespace raincast {

/// Where the cells of a polar scan are shorter or narrower than pixels, the centres of pixels miss
/// some of them: shows every such cell in the pixels that its middle line (across the beam)
/// crosses, unless one shows a stronger cell. The stronger of two has the value farther from zero;
/// a cell whose range is folded is weaker than any other echo.
///
/// The picture has the levels of the cells under its pixels' centres. Lines are placed within three
/// metres, a hundredth of a pixel.
void showSmallCells(const PolarScan& scan, const ImageGeometry& image, IndexedPicture& picture);

} // namespace raincast
