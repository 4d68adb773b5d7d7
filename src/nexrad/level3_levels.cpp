// SPDX-License-Identifier: MIT
#include "nexrad/level3_levels.h"

#include "palette/nws_colours.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace raincast {

namespace {

using Check = tl::expected<void, QString>;

constexpr std::size_t kThresholdsOffset = 60; // bytes from the message header
constexpr int kFirstDigitalLevel = 2;         // 0: below threshold; 1: range folded or missing

// A threshold halfword of a product with 16 levels: flags, and a number or a code in the low byte.
constexpr unsigned kIsCode = 0x8000;
constexpr unsigned kCodeRangeFolded = 3;
constexpr unsigned kMinus = 0x0100;
struct Divisor {
    unsigned flag;
    float divisor;
};
constexpr std::array<Divisor, 3> kDivisors = {{{0x1000, 10}, {0x2000, 20}, {0x4000, 100}}};

float thresholdValue(unsigned halfword) {
    const unsigned low = halfword & 0xFF;
    if ((halfword & kIsCode) != 0) {
        return low == kCodeRangeFolded ? rangeFolded() : noEcho();
    }
    const auto* scale = std::find_if(kDivisors.begin(), kDivisors.end(), [&](const Divisor& row) {
        return (halfword & row.flag) != 0;
    });
    const float size = static_cast<float>(low) / (scale != kDivisors.end() ? scale->divisor : 1);
    return (halfword & kMinus) != 0 ? -size : size;
}

/// The colours of velocity and precipitation belong to the levels whatever their thresholds are;
/// those of reflectivity belong to dBZ, so that clear air's finer steps look like other weather.
std::uint8_t sixteenLevelColour(Product product, std::uint8_t level, float value) {
    if (std::isnan(value)) {
        return 0;
    }
    return quantityOf(product) == Quantity::reflectivity ? nwsLevel(product, value) : level;
}

Check readSixteenLevels(const Level3Description& description, PolarScan& scan) {
    for (std::uint8_t level = 0; level < description.thresholds.size(); ++level) {
        const float value = thresholdValue(description.thresholds[level]);
        scan.values[level] = value;
        scan.levels[level] = sixteenLevelColour(scan.product, level, value);
    }
    return {};
}

tl::unexpected<QString>
problem(const char* field, std::size_t halfword, std::size_t offset, const char* found) {
    const std::size_t byte = offset + kThresholdsOffset + 2 * halfword;
    return tl::unexpected(
        QStringLiteral("%1 at byte %2 is %3")
            .arg(QLatin1String(field), QString::number(byte), QLatin1String(found))
    );
}

void setDigital(PolarScan& scan, int level, double value) {
    const auto index = static_cast<std::size_t>(level);
    scan.values[index] = static_cast<float>(value);
    scan.levels[index] = nwsLevel(scan.product, scan.values[index]);
}

Check readDigital(
    const Level3Description& description, const Level3Kind& kind, std::size_t offset,
    PolarScan& scan
) {
    const auto least = static_cast<std::int16_t>(description.thresholds[0]);
    const int increment = description.thresholds[1];
    if (increment == 0) {
        return problem("the data levels' increment", 1, offset, "0");
    }
    if (quantityOf(kind.product) == Quantity::velocity) {
        setDigital(scan, 1, rangeFolded());
    }
    for (int level = kFirstDigitalLevel; level < 256; ++level) {
        const int tenths = least + (level - kFirstDigitalLevel) * increment;
        setDigital(scan, level, tenths / 10.0 * kind.unitFactor);
    }
    return {};
}

Check readAccumulation(
    const Level3Description& description, const Level3Kind& kind, std::size_t offset,
    PolarScan& scan
) {
    const auto floatAt = [&](std::size_t halfword) {
        const std::uint32_t high = description.thresholds[halfword];
        return std::bit_cast<float>(high << 16 | description.thresholds[halfword + 1]);
    };
    const float scale = floatAt(0);
    const float zero = floatAt(2);
    if (!std::isfinite(scale) || scale <= 0) {
        return problem("the data levels' scale", 0, offset, "not a positive number");
    }
    if (!std::isfinite(zero)) {
        return problem("the data levels' offset", 2, offset, "not a number");
    }
    const int flags = std::min<int>(description.thresholds[6], 256);
    for (int level = flags; level < 256; ++level) {
        setDigital(scan, level, (level - double{zero}) / double{scale} * kind.unitFactor);
    }
    return {};
}

} // namespace

tl::expected<void, QString> readLevel3Levels(
    const Level3Description& description, const Level3Kind& kind, std::size_t messageOffset,
    PolarScan& scan
) {
    scan.values.fill(noEcho());
    scan.levels.fill(0);
    switch (kind.scale) {
    case Level3Scale::sixteenLevels:
        break;
    case Level3Scale::digital:
        return readDigital(description, kind, messageOffset, scan);
    case Level3Scale::accumulation:
        return readAccumulation(description, kind, messageOffset, scan);
    }
    return readSixteenLevels(description, scan);
}

} // namespace raincast
