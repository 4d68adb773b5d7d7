// SPDX-License-Identifier: MIT
#include "server/sample_scan.h"

#include "server/nws_colours.h"
#include "server/sample_accumulation.h"
#include "server/sample_noise.h"
#include "server/sample_sky.h"

#include <algorithm>
#include <array>

namespace raincast {

namespace {

constexpr int kRadials = 360;
constexpr std::uint8_t kFoldedCell = 1;
constexpr int kFirstCell = 2;

/// How a quantity's values lie in the bytes 2 to 255.
struct Coding {
    double least;
    double step;
};

/// Cells are filled by a function that knows a place's value; not a number is no echo, infinity
/// range folding.
using Echo = double;

constexpr Coding codingOf(Quantity quantity) {
    switch (quantity) {
    case Quantity::reflectivity:
        break;
    case Quantity::velocity:
        return {-126, 1};
    case Quantity::precipitation:
        return {.02, .05};
    }
    return {-32, .5};
}

std::uint8_t coded(Coding coding, Echo value) {
    if (std::isnan(value) || value < coding.least) {
        return 0;
    }
    if (std::isinf(value)) {
        return kFoldedCell;
    }
    const double step = std::floor((value - coding.least) / coding.step);
    return static_cast<std::uint8_t>(std::min(kFirstCell + step, 255.0));
}

void setTables(PolarScan& scan, Coding coding) {
    scan.values.fill(noEcho());
    scan.values[kFoldedCell] = rangeFolded();
    for (int cell = kFirstCell; cell < 256; ++cell) {
        scan.values[static_cast<std::size_t>(cell)] =
            static_cast<float>(coding.least + (cell - kFirstCell) * coding.step);
    }
    std::transform(scan.values.begin(), scan.values.end(), scan.levels.begin(), [&](float value) {
        return nwsLevel(scan.product, value);
    });
}

template<typename EchoAt>
void fillPolar(PolarScan& scan, Coding coding, EchoAt echoAt) {
    for (int radial = 0; radial < kRadials; ++radial) {
        scan.radials.push_back({radial * 10, 10});
        const PlaneVector direction = towards(radial + .5);
        for (int bin = 0; bin < scan.columns; ++bin) {
            scan.cells.push_back(coded(coding, echoAt((bin + .5) * scan.cellKm * direction)));
        }
    }
}

template<typename EchoAt>
void fillRaster(PolarScan& scan, Coding coding, double reachKm, EchoAt echoAt) {
    for (int row = 0; row < scan.rows; ++row) {
        for (int column = 0; column < scan.columns; ++column) {
            const PlaneVector place{
                (column + .5 - scan.columns / 2.0) * scan.cellKm,
                (scan.rows / 2.0 - row - .5) * scan.cellKm};
            scan.cells.push_back(place.length() < reachKm ? coded(coding, echoAt(place)) : 0);
        }
    }
}

/// The radial velocity, in knots, of what the beam sees; `less` is taken from the wind.
Echo radialKnots(
    const SampleClimate& climate, const SampleSky& sky, PlaneVector place, PlaneVector less,
    std::int64_t minute
) {
    const double dbz = sky.lowestBeamDbz(place);
    constexpr double kLeastDbz = -1;
    if (dbz < kLeastDbz) {
        return noEcho();
    }
    const double range = place.length();
    const PlaneVector outwards = 1 / range * place;
    // A strong echo from beyond the range that pulses can tell apart covers a weak one within it.
    constexpr double kUnambiguousKm = 175;
    if (dbz < 14 && sky.rainDbz((range + kUnambiguousKm) * outwards) > 26) {
        return rangeFolded();
    }
    const PlaneVector motion = sky.isClutter(place) ? -1 * less : sky.windKnots(place) - less;
    const auto east = static_cast<std::int64_t>(std::floor(place.east * 2));
    const auto north = static_cast<std::int64_t>(std::floor(place.north * 2));
    const double jitter = asFraction(mixed(mixed(climate.seed + 51, minute), east * 4000 + north));
    return motion.dot(outwards) + 4 * (jitter - .5);
}

/// A storm total begins anew every six hours, with three hours of rain in it.
std::int64_t totalBegins(const SampleClimate& climate, std::int64_t minute) {
    constexpr std::int64_t kRestart = 360;
    const auto shift = static_cast<std::int64_t>(climate.seed % kRestart);
    return (minute - shift) / kRestart * kRestart + shift - kRestart / 2;
}

/// The shape of each product's cells.
struct Shape {
    double cellKm;
    int columns;
};

constexpr std::array<Shape, kAllProducts.size()> kShapes = {{
    {1, 230},
    {1, 464}, // a raster
    {2, 230},
    {2, 115},
    {2, 115},
    {1, 230},
    {1, 230},
}};

void fillReflectivity(PolarScan& scan, const SampleSky& sky, Coding coding) {
    if (scan.product == Product::compositeReflectivity) {
        constexpr double kReachKm = 230;
        scan.layout = CellLayout::raster;
        scan.rows = scan.columns;
        fillRaster(scan, coding, kReachKm, [&](PlaneVector place) {
            return sky.compositeDbz(place);
        });
        return;
    }
    fillPolar(scan, coding, [&](PlaneVector place) { return sky.lowestBeamDbz(place); });
}

void fillVelocity(
    PolarScan& scan, const SampleClimate& climate, const SampleSky& sky, std::int64_t minute,
    Coding coding
) {
    const PlaneVector less =
        scan.product == Product::stormRelativeVelocity ? sky.stormMotionKnots() : PlaneVector{};
    fillPolar(scan, coding, [&](PlaneVector place) {
        return radialKnots(climate, sky, place, less, minute);
    });
}

void fillPrecipitation(
    PolarScan& scan, const SampleClimate& climate, std::int64_t minute, Coding coding
) {
    const std::int64_t begin =
        scan.product == Product::oneHourPrecipitation ? minute - 60 : totalBegins(climate, minute);
    const SampleAccumulation fallen(climate, begin, minute, scan.cellKm * scan.columns);
    fillPolar(scan, coding, [&](PlaneVector place) { return fallen.inchesAt(place); });
}

} // namespace

SampleClimate sampleClimate(std::string_view site) {
    std::uint64_t seed = 0;
    for (const char letter : site) {
        seed = mixed(seed, letter);
    }
    return SampleClimate(seed);
}

PolarScan sampleScan(const AntennaPosition& antenna, Product product, FileTime time) {
    const Shape& shape = kShapes[static_cast<std::size_t>(product)];
    PolarScan scan;
    scan.site = antenna.id;
    scan.product = product;
    scan.time = time;
    scan.latitude = antenna.latitude;
    scan.longitude = antenna.longitude;
    scan.sample = true;
    scan.rows = kRadials;
    scan.columns = shape.columns;
    scan.cellKm = shape.cellKm;

    const Coding coding = codingOf(quantityOf(product));
    setTables(scan, coding);
    const SampleClimate climate = sampleClimate(antenna.id);
    const std::int64_t minute = (time - kUnixEpoch) / kFileTimePerMinute;
    if (quantityOf(product) == Quantity::precipitation) {
        fillPrecipitation(scan, climate, minute, coding);
        return scan;
    }
    // Velocity looks for second-trip echoes behind its own reach.
    const bool isVelocity = quantityOf(product) == Quantity::velocity;
    const SampleSky sky(climate, minute, shape.cellKm * shape.columns + (isVelocity ? 180 : 0));
    if (isVelocity) {
        fillVelocity(scan, climate, sky, minute, coding);
    } else {
        fillReflectivity(scan, sky, coding);
    }
    return scan;
}

} // namespace raincast
