// SPDX-License-Identifier: MIT
#include "sample/sample_scan.h"

#include "palette/nws_colours.h"
#include "sample/sample_accumulation.h"
#include "sample/sample_noise.h"
#include "sample/sample_sky.h"

#include <algorithm>
#include <array>

namespace raincast {

namespace {

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

void fillPolar(PolarScan& scan, Coding coding, const SampleGrid& values) {
    const int width = 3600 / scan.rows;
    for (int radial = 0; radial < scan.rows; ++radial) {
        scan.radials.push_back({radial * width, width});
    }
    scan.cells.reserve(values.size());
    for (const float value : values) {
        scan.cells.push_back(coded(coding, double(value)));
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

/// The common part of all products of one radar at one minute.
struct Volume {
    SampleClimate climate;
    std::int64_t minute;
    SampleMemory& memory;

    [[nodiscard]] SampleMemory::Key key(SampleMemory::Kind kind, int columns) const {
        return {kind, climate.seed, minute, minute, columns};
    }
};

/// The radials of a scan.
struct Rays {
    int count;
    int columns;
    double cellKm;

    explicit Rays(const PolarScan& scan)
        : count(scan.rows), columns(scan.columns), cellKm(scan.cellKm) {}

    [[nodiscard]] PlaneVector direction(int radial) const {
        return towards((radial + .5) * (360. / count));
    }
    /// What `at` makes of the place of each cell, radial by radial.
    template<typename At>
    [[nodiscard]] SampleGrid grid(At at) const {
        SampleGrid result;
        result.reserve(static_cast<std::size_t>(count) * static_cast<std::size_t>(columns));
        for (int radial = 0; radial < count; ++radial) {
            const PlaneVector towardsCells = direction(radial);
            for (int bin = 0; bin < columns; ++bin) {
                result.push_back(static_cast<float>(at((bin + .5) * cellKm * towardsCells)));
            }
        }
        return result;
    }
};

/// The echoes of the lowest beam, in dBZ.
SampleGrid lowestBeam(const SampleSky& sky, const Rays& rays) {
    return rays.grid([&](PlaneVector place) { return sky.lowestBeamDbz(place); });
}

/// The velocity of the echo at a place, in knots away from the radar.
float radialKnots(const Volume& volume, const SampleSky& sky, PlaneVector place, float dbz) {
    constexpr float kLeastDbz = -1;
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
    const PlaneVector motion = sky.isClutter(place) ? PlaneVector{} : sky.windKnots(place);
    const auto east = static_cast<std::int64_t>(std::floor(place.east * 2));
    const auto north = static_cast<std::int64_t>(std::floor(place.north * 2));
    const double jitter =
        asFraction(mixed(mixed(volume.climate.seed + 51, volume.minute), east * 4000 + north));
    return static_cast<float>(motion.dot(outwards) + 4 * (jitter - .5));
}

SampleGrid radialVelocities(
    const Volume& volume, const SampleSky& sky, const SampleGrid& echoes, const Rays& rays
) {
    auto echo = echoes.begin();
    return rays.grid([&](PlaneVector place) { return radialKnots(volume, sky, place, *echo++); });
}

/// A storm total begins again every six hours, with three hours of rain in it.
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

constexpr double kReachKm = 230;
constexpr double kSecondTripKm = 180; // more: what velocity looks for behind its own reach

void fillLongRange(PolarScan& scan, const Volume& volume, Coding coding) {
    const SampleSky sky(volume.climate, volume.minute, 2 * kReachKm);
    fillPolar(scan, coding, lowestBeam(sky, Rays(scan)));
}

void fillComposite(PolarScan& scan, const Volume& volume, Coding coding) {
    const SampleSky sky(volume.climate, volume.minute, kReachKm);
    scan.layout = CellLayout::raster;
    scan.rows = scan.columns;
    fillRaster(scan, coding, kReachKm, [&](PlaneVector place) { return sky.compositeDbz(place); });
}

/// The lowest beam's echoes: base reflectivity, and what velocities are measured of.
std::shared_ptr<const SampleGrid> baseEchoes(const Volume& volume, const Rays& rays) {
    return volume.memory.get(volume.key(SampleMemory::Kind::echoes, rays.columns), [&] {
        return lowestBeam(SampleSky(volume.climate, volume.minute, kReachKm), rays);
    });
}

std::shared_ptr<const SampleGrid> baseVelocities(const Volume& volume, const Rays& rays) {
    return volume.memory.get(volume.key(SampleMemory::Kind::velocities, rays.columns), [&] {
        const SampleSky sky(volume.climate, volume.minute, kReachKm + kSecondTripKm);
        return radialVelocities(volume, sky, *baseEchoes(volume, rays), rays);
    });
}

/// The storms' mean motion taken from each radial.
SampleGrid stormRelative(const Volume& volume, SampleGrid velocities, const Rays& rays) {
    const PlaneVector motion = stormMotionKnots(volume.climate);
    auto velocity = velocities.begin();
    for (int radial = 0; radial < rays.count; ++radial) {
        const auto less = static_cast<float>(motion.dot(rays.direction(radial)));
        for (int bin = 0; bin < rays.columns; ++bin) {
            *velocity++ -= less;
        }
    }
    return velocities;
}

void fillPrecipitation(PolarScan& scan, const Volume& volume, Coding coding) {
    const std::int64_t begin = scan.product == Product::oneHourPrecipitation
                                   ? volume.minute - 60
                                   : totalBegins(volume.climate, volume.minute);
    const SampleAccumulation fallen(
        volume.climate, begin, volume.minute, scan.cellKm * scan.columns, volume.memory
    );
    const auto inchesAt = [&](PlaneVector place) { return fallen.inchesAt(place); };
    fillPolar(scan, coding, Rays(scan).grid(inchesAt));
}

void fill(PolarScan& scan, const Volume& volume, Coding coding) {
    switch (scan.product) {
    case Product::baseReflectivity:
        return fillPolar(scan, coding, *baseEchoes(volume, Rays(scan)));
    case Product::compositeReflectivity:
        return fillComposite(scan, volume, coding);
    case Product::longRangeReflectivity:
        return fillLongRange(scan, volume, coding);
    case Product::oneHourPrecipitation:
    case Product::totalPrecipitation:
        return fillPrecipitation(scan, volume, coding);
    case Product::velocity:
        return fillPolar(scan, coding, *baseVelocities(volume, Rays(scan)));
    case Product::stormRelativeVelocity:
        break;
    }
    fillPolar(scan, coding, stormRelative(volume, *baseVelocities(volume, Rays(scan)), Rays(scan)));
}

} // namespace

SampleClimate sampleClimate(std::string_view site) {
    std::uint64_t seed = 0;
    for (const char letter : site) {
        seed = mixed(seed, letter);
    }
    return SampleClimate(seed);
}

PolarScan sampleScan(
    const AntennaPosition& antenna, Product product, FileTime time, SampleMemory& memory,
    Fineness fineness
) {
    const Shape& shape = kShapes[static_cast<std::size_t>(product)];
    const bool isSharp = fineness == Fineness::sharp;
    const int cells = !isSharp ? 1 : product == Product::compositeReflectivity ? 2 : 4;
    PolarScan scan;
    scan.site = antenna.id;
    scan.product = product;
    scan.time = time;
    scan.latitude = antenna.latitude;
    scan.longitude = antenna.longitude;
    scan.sample = true;
    scan.rows = isSharp ? 720 : 360;
    scan.columns = shape.columns * cells;
    scan.cellKm = shape.cellKm / cells;

    const Coding coding = codingOf(quantityOf(product));
    setTables(scan, coding);
    const std::int64_t minute = (time - kUnixEpoch) / kFileTimePerMinute;
    fill(scan, {sampleClimate(antenna.id), minute, memory}, coding);
    return scan;
}

} // namespace raincast
