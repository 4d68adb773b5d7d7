// SPDX-License-Identifier: MIT
#include "provider/live_products.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace raincast {

namespace {

struct Row {
    Product product;
    LiveChoices bucket; ///< the best first: later ones are of days when the first did not exist
    LiveChoices ring;
};

const Row& rowOf(Product product) {
    // clang-format off
    static const std::array<Row, kAllProducts.size()> rows = {{
        {Product::baseReflectivity,      {"N0B", "N0Q", "N0R"}, {"p94r0"}},
        {Product::compositeReflectivity, {"NCR"},               {"p37cr"}},
        {Product::longRangeReflectivity, {"N0B", "N0Q", "N0Z"}, {"p94r0"}},
        {Product::oneHourPrecipitation,  {"N1P", "DAA"},        {"78ohp", "170aa"}},
        {Product::totalPrecipitation,    {"NTP", "DTA"},        {"80stp", "172dt"}},
        {Product::velocity,              {"N0G", "N0U", "N0V"}, {"p99v0"}},
        {Product::stormRelativeVelocity, {"N0S"},               {"56rm0"}},
    }};
    // clang-format on
    return rows[static_cast<std::size_t>(product)];
}

// Outside of the contiguous states.
constexpr std::string_view kPacific[] = {"ABC", "ACG", "AEC", "AHG", "AIH", "AKC",
                                         "APD", "GUA", "HKI", "HKM", "HMO", "HWA"};
constexpr std::string_view kTropical[] = {"JUA"};

char regionOf(std::string_view site) {
    const auto isOneOf = [site](const auto& sites) {
        return std::find(std::begin(sites), std::end(sites), site) != std::end(sites);
    };
    return isOneOf(kPacific) ? 'p' : isOneOf(kTropical) ? 't' : 'k';
}

} // namespace

const LiveChoices& bucketChoices(Product product) {
    return rowOf(product).bucket;
}

const LiveChoices& ringChoices(Product product) {
    return rowOf(product).ring;
}

std::string ringSite(std::string_view site) {
    std::string name(1, regionOf(site));
    for (const char letter : site) {
        name += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    }
    return name;
}

std::string_view radarOf(std::string_view site, FileTime time) {
    const ClosedSite* const closed = findClosedSite(site, time);
    return closed == nullptr ? site : closed->follower.id;
}

} // namespace raincast
