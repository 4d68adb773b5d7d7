// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace raincast {

/// The products of the tree. Their values are the rows of the viewer's product table.
enum class Product {
    baseReflectivity,      ///< N0R
    compositeReflectivity, ///< NCR
    longRangeReflectivity, ///< N0Z
    oneHourPrecipitation,  ///< N1P
    totalPrecipitation,    ///< NTP
    velocity,              ///< N0V
    stormRelativeVelocity, ///< N0S
};

inline constexpr std::array kAllProducts = {
    Product::baseReflectivity,      Product::compositeReflectivity, Product::longRangeReflectivity,
    Product::oneHourPrecipitation,  Product::totalPrecipitation,    Product::velocity,
    Product::stormRelativeVelocity,
};

/// The two sizes of map: N0Z is drawn on the long one, everything else on the short one.
enum class Range { shortRange, longRange };

inline constexpr std::array kRanges = {Range::shortRange, Range::longRange};

/// What a product measures: decides units and colours.
enum class Quantity {
    reflectivity,  ///< dBZ
    velocity,      ///< knots, away from the radar positive
    precipitation, ///< inches
};

/// Three characters, as in "N0R".
[[nodiscard]] std::string_view codeOf(Product product);
[[nodiscard]] std::optional<Product> productOfCode(std::string_view code);

[[nodiscard]] Range rangeOf(Product product);
[[nodiscard]] Quantity quantityOf(Product product);

/// "Short" or "Long", as in paths.
[[nodiscard]] std::string_view wordOf(Range range);
[[nodiscard]] std::optional<Range> rangeOfWord(std::string_view word);

} // namespace raincast
