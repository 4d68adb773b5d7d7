// SPDX-License-Identifier: MIT
#pragma once

#include "nexrad/polar_scan.h"

namespace raincast {

class Level3Cursor;

/// Reads the symbology block: the cells of its first picture (radial AF1F, raster BA07 or BA0F,
/// digital radial 16) into the scan's layout, rows, columns, radials and cells, and `firstKm`, for
/// which `cellKm` must be set. A block without a picture leaves the scan without cells and its
/// first text in the note. The cursor knows whether it worked.
void readLevel3Symbology(Level3Cursor& cursor, PolarScan& scan);

} // namespace raincast
