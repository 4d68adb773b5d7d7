// SPDX-License-Identifier: MIT
#include "radar/catalogue/product.h"

#include <algorithm>

namespace raincast {

namespace {

struct Row {
    Product product;
    std::string_view code;
    Range range;
    Quantity quantity;
};

constexpr std::array<Row, kAllProducts.size()> kRows = {{
    {Product::baseReflectivity, "N0R", Range::shortRange, Quantity::reflectivity},
    {Product::compositeReflectivity, "NCR", Range::shortRange, Quantity::reflectivity},
    {Product::longRangeReflectivity, "N0Z", Range::longRange, Quantity::reflectivity},
    {Product::oneHourPrecipitation, "N1P", Range::shortRange, Quantity::precipitation},
    {Product::totalPrecipitation, "NTP", Range::shortRange, Quantity::precipitation},
    {Product::velocity, "N0V", Range::shortRange, Quantity::velocity},
    {Product::stormRelativeVelocity, "N0S", Range::shortRange, Quantity::velocity},
}};

const Row& rowOf(Product product) {
    return kRows[static_cast<std::size_t>(product)];
}

} // namespace

std::string_view codeOf(Product product) {
    return rowOf(product).code;
}

std::optional<Product> productOfCode(std::string_view code) {
    const auto* row = std::find_if(kRows.begin(), kRows.end(), [&](const Row& candidate) {
        return candidate.code == code;
    });
    return row != kRows.end() ? std::optional(row->product) : std::nullopt;
}

Range rangeOf(Product product) {
    return rowOf(product).range;
}

Quantity quantityOf(Product product) {
    return rowOf(product).quantity;
}

std::string_view wordOf(Range range) {
    return range == Range::shortRange ? "Short" : "Long";
}

std::optional<Range> rangeOfWord(std::string_view word) {
    for (const Range range : kRanges) {
        if (wordOf(range) == word) {
            return range;
        }
    }
    return std::nullopt;
}

} // namespace raincast
