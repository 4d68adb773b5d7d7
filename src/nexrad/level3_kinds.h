// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/product.h"

#include <optional>
#include <span>

namespace raincast {

/// How a product's data levels turn into values.
enum class Level3Scale {
    sixteenLevels, ///< a threshold for each of 16 levels
    digital,       ///< least value and increment, tenths, for levels 2 to 255
    accumulation,  ///< scale and offset as floating-point numbers
};

/// A Level III product that can be rendered.
struct Level3Kind {
    int code;
    Level3Scale scale;
    double cellKm;               ///< along the beam, or the edge of a raster's cell
    double unitFactor;           ///< from the product's unit to that of its quantity
    bool hasElevation;           ///< whether the elevation angle's halfword means that
    Product product;             ///< the main one that it stands for
    std::optional<Product> also; ///< another one that it covers
};

/// All of them in the order of their codes. One more product is one more row.
[[nodiscard]] std::span<const Level3Kind> level3Kinds();

/// Null for a code that cannot be rendered.
[[nodiscard]] const Level3Kind* findLevel3Kind(int code);

} // namespace raincast
