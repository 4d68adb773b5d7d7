// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/product.h"

#include <QByteArray>
#include <QRgb>

#include <array>
#include <cstdint>
#include <optional>

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

/// The level of a colour; none for a colour that is not of the table.
[[nodiscard]] std::optional<std::size_t> nwsLevelOf(Quantity quantity, QRgb colour);

/// The values of a level in the product's unit: `from` is the first and `below` the first of the
/// next; infinite where there is no end. Towards the radar both are negative and `below` is the one
/// near to calm. Level 8 of velocity is said as what moves away, though it holds what stands still.
struct NwsRange {
    double from = 0;
    double below = 0;

    friend bool operator==(const NwsRange&, const NwsRange&) = default;
};
/// The range of a level from 0 to 15; none for "range folded", and for level 0 of velocity, which
/// is no value at all. Level 0 of precipitation is from 0 to 0.
[[nodiscard]] std::optional<NwsRange> nwsRange(Product product, std::size_t level);

/// The least value of a level of 1 to 15 as a scale says it, in the product's unit: "5", "0.3",
/// "-64"; towards the radar the value that is nearest to calm; "RF" for range folded.
[[nodiscard]] QByteArray nwsLevelName(Product product, std::size_t level);

/// "dBZ", "knots" or "inches".
[[nodiscard]] const char* nwsUnit(Quantity quantity);

} // namespace raincast
