// SPDX-License-Identifier: MIT
// Level III products from a folder that somebody else fills: whatever the bytes, decoding ends
// within its limits, says either what is there or what is wrong, and what it gives can be drawn.
#include "nexrad/level3_decoder.h"
#include "nexrad/rasteriser.h"
#include "radar/catalogue/image_geometry.h"

#include <cstdlib>

namespace {

using namespace raincast;

constexpr std::size_t kMostCells = 1'600'000; // 800 radials of 2000 bins
constexpr std::size_t kDrawnOneIn = 16;

bool isWhole(const PolarScan& scan) {
    const auto rows = static_cast<std::size_t>(scan.rows);
    const auto columns = static_cast<std::size_t>(scan.columns);
    const bool radialsFit = scan.layout == CellLayout::raster || scan.radials.size() == rows;
    return rows == 0 || (scan.cells.size() == rows * columns && radialsFit);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Level3Result result = decodeLevel3(QByteArrayView(data, static_cast<qsizetype>(size)));
    if (!result) {
        if (result.error().isEmpty()) {
            std::abort();
        }
        return 0;
    }
    if (!isWhole(*result) || result->cells.size() > 2 * kMostCells) {
        std::abort();
    }
    // Always the same picture, whose places are found once, and not of every product: the fuzzer
    // then tries many.
    if (size % kDrawnOneIn != 0) {
        return 0;
    }
    PolarScan scan = *result;
    scan.latitude = 35;
    scan.longitude = -97;
    static_cast<void>(rasterise(scan, ImageGeometry(35, -97, Range::shortRange)));
    return 0;
}
