// SPDX-License-Identifier: MIT
#include "radar/catalogue/products.h"

#include "core/text.h"
#include "radar/catalogue/typing_errors.h"

namespace raincast {

namespace {

constexpr RadarProductTable kProducts = std::to_array<RadarProduct>({
    {Text::marked(u"Base Reflectivity"), u"N0R", true},
    {Text::marked(u"Composite Reflectivity"), u"NCR", true},
    {Text::marked(u"Long Range Reflectivity"), u"N0Z", false},
    {Text::marked(u"1 Hour Precipitation"), u"N1P", true},
    {Text::marked(u"Total Precipitation"), u"NTP", true},
    {Text::marked(u"Velocity"), u"N0V", true},
    {Text::marked(u"Storm Relative Velocity"), u"N0S", true},
});

const RadarProduct& product(int index) {
    const bool known = index >= 0 && static_cast<std::size_t>(index) < kProducts.size();
    return kProducts[static_cast<std::size_t>(known ? index : kDefaultProduct)];
}

} // namespace

const RadarProductTable& radarProducts() {
    return kProducts;
}

QStringView ProductCode(int index) {
    return product(index).codeText();
}

QStringView ProductRange(int index) {
    return product(index).shortRange ? u"Short" : u"Long";
}

std::optional<int> findRadarProduct(QStringView code) {
    for (std::size_t i = 0; i < kProducts.size(); ++i) {
        if (kProducts[i].codeText() == code) {
            return static_cast<int>(i);
        }
    }
    return std::nullopt;
}

std::vector<const RadarProduct*> suggestRadarProducts(QStringView typed) {
    std::vector<QStringView> codes;
    for (const RadarProduct& row : kProducts) {
        codes.push_back(row.codeText());
    }
    std::vector<const RadarProduct*> found;
    for (const std::size_t index : fewestTypingErrors(typed, codes)) {
        found.push_back(&kProducts[index]);
    }
    return found;
}

} // namespace raincast
