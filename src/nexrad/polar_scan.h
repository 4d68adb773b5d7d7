// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "radar/catalogue/product.h"

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace raincast {

/// The part of the circle that one radial covers, in tenths of a degree clockwise from north: from
/// `startTenths` (0 to 3599) over `widthTenths` (above 0). Where radials overlap, the later one
/// shows.
struct RadialSpan {
    int startTenths = 0;
    int widthTenths = 0;
};

/// How the cells of a scan lie on the ground.
enum class CellLayout {
    polar,  ///< a row of cells is a radial; its cells follow each other outwards
    raster, ///< rows run from north to south, their cells from west to east, antenna in the middle
};

/// One product of one radar at one time, before it is a picture: rows of cells, each cell a byte
/// that the tables `values` and `levels` explain. Level III products and sample weather both come
/// as this, and pictures are made of nothing else.
struct PolarScan {
    std::string site; ///< three letters, "TLX"; empty when the product does not say
    Product product = Product::baseReflectivity; ///< the main one of the scan
    int code = 0;                ///< the Level III product code; 0 for sample weather
    FileTime time = 0;           ///< start of the volume scan
    double latitude = 0;         ///< of the antenna, degrees
    double longitude = 0;        ///< of the antenna, degrees
    double elevationDegrees = 0; ///< of the beam; 0 where the product has none
    bool sample = false;         ///< made up: every picture of it says so
    std::string note;            ///< the text of a product without cells, or empty

    CellLayout layout = CellLayout::polar;
    std::vector<RadialSpan> radials; ///< polar only: one for each row
    int rows = 0;                    ///< 0 when the product shows nothing at all
    int columns = 0;                 ///< cells in each row
    double firstKm = 0;              ///< polar: ground range where the first cell begins
    double cellKm = 0;               ///< the length (and, of a raster, width) of a cell
    std::vector<std::uint8_t> cells; ///< rows × columns, row by row
    std::array<float, 256> values{}; ///< in the quantity's unit; noEcho() and rangeFolded() too
    std::array<std::uint8_t, 256> levels{}; ///< of 16 colours: 0 for none, else 1 to 15

    [[nodiscard]] std::uint8_t cell(int row, int column) const {
        return cells
            [static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
             static_cast<std::size_t>(column)];
    }
};

/// The value of a cell without an echo, or with one below the product's least.
[[nodiscard]] inline float noEcho() {
    return std::numeric_limits<float>::quiet_NaN();
}

/// The value of a cell whose echo could be one of several ranges.
[[nodiscard]] inline float rangeFolded() {
    return std::numeric_limits<float>::infinity();
}

} // namespace raincast
