// SPDX-License-Identifier: MIT
#include "palette/nws_colours.h"

#include "radar/bitmap.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

namespace raincast {

namespace {

using Colours = std::array<QRgb, 16>;

constexpr Colours kReflectivity = {
    kTransparentWhite, 0xFF04E9E7, 0xFF019FF4, 0xFF0300F4, 0xFF02FD02, 0xFF01C501,
    0xFF008E00,        0xFFFDF802, 0xFFE5BC00, 0xFFFD8B00, 0xFFFD0000, 0xFFD40000,
    0xFFBC0000,        0xFFF800FD, 0xFF9854C6, 0xFFFDFDFD,
};

// The last is "range folded".
constexpr Colours kVelocity = {
    kTransparentWhite, 0xFF00E0FF, 0xFF0080FF, 0xFF320096, 0xFF00FB90, 0xFF00BB00,
    0xFF008F00,        0xFFCDC09F, 0xFF767676, 0xFFF88700, 0xFFFFCF00, 0xFFFFFF00,
    0xFFAE0000,        0xFFD07000, 0xFFFF0000, 0xFF77007D,
};

constexpr Colours kPrecipitation = {
    kTransparentWhite, 0xFFAAAAAA, 0xFF767676, 0xFF00FFFF, 0xFF00AFAF, 0xFF00FF00,
    0xFF008F00,        0xFFFF00FF, 0xFFAF327D, 0xFF0000FF, 0xFF320096, 0xFFFFFF00,
    0xFFFFAA00,        0xFFFF0000, 0xFFAF0000, 0xFFFDFDFD,
};

// Where levels 1, 2, 3 … begin.
constexpr std::array kReflectivityFrom = {5.F,  10.F, 15.F, 20.F, 25.F, 30.F, 35.F, 40.F,
                                          45.F, 50.F, 55.F, 60.F, 65.F, 70.F, 75.F};
constexpr std::array kOneHourFrom = {0.F,   .1F, .25F, .5F, .75F, 1.F, 1.25F, 1.5F,
                                     1.75F, 2.F, 2.5F, 3.F, 4.F,  6.F, 8.F};
constexpr std::array kStormTotalFrom = {0.F, .3F, .6F, 1.F, 1.5F, 2.F,  2.5F, 3.F,
                                        4.F, 5.F, 6.F, 8.F, 10.F, 12.F, 15.F};
// Levels 8 to 14 begin at these speeds away from the radar, 7 to 1 mirror them from -1 knot on.
constexpr std::array kSpeedFrom = {10.F, 20.F, 26.F, 36.F, 50.F, 64.F};
constexpr std::uint8_t kCalmLevel = 8;
constexpr std::uint8_t kRangeFoldedLevel = 15;

std::uint8_t thresholdsReached(std::span<const float> thresholds, float value) {
    const auto end = std::upper_bound(thresholds.begin(), thresholds.end(), value);
    return static_cast<std::uint8_t>(end - thresholds.begin());
}

std::uint8_t velocityLevel(float knots) {
    if (std::isinf(knots)) {
        return kRangeFoldedLevel;
    }
    const float rounded = std::round(knots * 10) / 10;
    if (rounded > -1) {
        return static_cast<std::uint8_t>(kCalmLevel + thresholdsReached(kSpeedFrom, rounded));
    }
    return static_cast<std::uint8_t>(kCalmLevel - 1 - thresholdsReached(kSpeedFrom, -rounded));
}

std::uint8_t precipitationLevel(std::span<const float> thresholds, float inches) {
    return inches > 0 ? thresholdsReached(thresholds, inches) : 0;
}

constexpr double kNoEnd = std::numeric_limits<double>::infinity();

/// Where levels 1 and up begin at thresholds; `least` is where level 0 does.
NwsRange between(std::span<const float> thresholds, std::size_t level, double least) {
    return {
        level == 0 ? least : double{thresholds[level - 1]},
        level < thresholds.size() ? double{thresholds[level]} : kNoEnd};
}

std::optional<NwsRange> velocityRange(std::size_t level) {
    if (level == 0 || level >= kRangeFoldedLevel) {
        return std::nullopt;
    }
    if (level >= kCalmLevel) {
        return between(kSpeedFrom, level - kCalmLevel, 0);
    }
    const NwsRange towards = between(kSpeedFrom, kCalmLevel - 1 - level, 1);
    return NwsRange{-towards.below, -towards.from};
}

QByteArray velocityName(std::size_t level) {
    constexpr std::size_t kLeastAway = kCalmLevel + 1;
    constexpr std::size_t kMostTowards = kCalmLevel - 2;
    if (level == kRangeFoldedLevel) {
        return "RF";
    }
    if (level >= kLeastAway) {
        return QByteArray::number(double(kSpeedFrom[level - kLeastAway]));
    }
    return level <= kMostTowards ? QByteArray::number(-double(kSpeedFrom[kMostTowards - level]))
                                 : QByteArray(level == kCalmLevel ? "0" : "-1");
}

} // namespace

const std::array<QRgb, 16>& nwsColours(Quantity quantity) {
    switch (quantity) {
    case Quantity::reflectivity:
        break;
    case Quantity::velocity:
        return kVelocity;
    case Quantity::precipitation:
        return kPrecipitation;
    }
    return kReflectivity;
}

std::uint8_t nwsLevel(Product product, float value) {
    const bool folded = std::isinf(value);
    if (std::isnan(value) || (folded && quantityOf(product) != Quantity::velocity)) {
        return 0;
    }
    switch (quantityOf(product)) {
    case Quantity::reflectivity:
        break;
    case Quantity::velocity:
        return velocityLevel(value);
    case Quantity::precipitation:
        return product == Product::oneHourPrecipitation
                   ? precipitationLevel(kOneHourFrom, value)
                   : precipitationLevel(kStormTotalFrom, value);
    }
    return thresholdsReached(kReflectivityFrom, value);
}

std::optional<std::size_t> nwsLevelOf(Quantity quantity, QRgb colour) {
    const auto& colours = nwsColours(quantity);
    const auto* const found = std::find(colours.begin(), colours.end(), colour | 0xFF000000U);
    return found != colours.end() ? std::optional(static_cast<std::size_t>(found - colours.begin()))
                                  : std::nullopt;
}

std::optional<NwsRange> nwsRange(Product product, std::size_t level) {
    switch (quantityOf(product)) {
    case Quantity::reflectivity:
        break;
    case Quantity::velocity:
        return velocityRange(level);
    case Quantity::precipitation:
        if (level == 0) {
            return NwsRange{0, 0};
        }
        return product == Product::oneHourPrecipitation ? between(kOneHourFrom, level, 0)
                                                        : between(kStormTotalFrom, level, 0);
    }
    return between(kReflectivityFrom, level, -kNoEnd);
}

QByteArray nwsLevelName(Product product, std::size_t level) {
    switch (quantityOf(product)) {
    case Quantity::reflectivity:
        break;
    case Quantity::velocity:
        return velocityName(level);
    case Quantity::precipitation:
        return QByteArray::number(
            double(
                product == Product::oneHourPrecipitation ? kOneHourFrom[level - 1]
                                                         : kStormTotalFrom[level - 1]
            ),
            'g', 3
        );
    }
    return QByteArray::number(double(kReflectivityFrom[level - 1]));
}

const char* nwsUnit(Quantity quantity) {
    switch (quantity) {
    case Quantity::reflectivity:
        break;
    case Quantity::velocity:
        return "knots";
    case Quantity::precipitation:
        return "inches";
    }
    return "dBZ";
}

} // namespace raincast
