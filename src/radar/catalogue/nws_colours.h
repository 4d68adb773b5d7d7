// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/product.h"

#include <QByteArray>
#include <QRgb>

#include <array>
#include <cstdint>

namespace raincast {

/// The colours of the National Weather Service's 16-level products by level; level 0, no echo, is
/// transparent white. No other level is white.
[[nodiscard]] const std::array<QRgb, 16>& nwsColours(Quantity quantity);

/// The level of a value in the product's unit: 0 for no echo, else 1 to 15. A value that is not a
/// number has level 0; infinity stands for "range folded".
///
/// Reflectivity: the greatest threshold (5, 10 … 75 dBZ) that the value reaches. Precipitation: the
/// same with inches, where level 1 is anything above nothing; total precipitation has thresholds of
/// its own. Velocity, rounded to a tenth of a knot: away from the radar the greatest threshold
/// reached, towards it the least, so that both sides are alike. (A product with 256 levels and its
/// twin with 16 then look the same.)
[[nodiscard]] std::uint8_t nwsLevel(Product product, float value);

/// The least value of a level of 1 to 15 as a scale says it, in the product's unit: "5", "0.3",
/// "-64"; towards the radar the value that is nearest to calm; "RF" for range folded.
[[nodiscard]] QByteArray nwsLevelName(Product product, std::size_t level);

/// "dBZ", "knots" or "inches".
[[nodiscard]] const char* nwsUnit(Quantity quantity);

} // namespace raincast
