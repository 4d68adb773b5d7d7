// SPDX-License-Identifier: MIT
#include "sample/sample_sky.h"

#include "sample/sample_noise.h"

#include <algorithm>
#include <iterator>

namespace raincast {

namespace {

constexpr double kKnotsPerKmAMinute = 60 / 1.852;
constexpr double kCellReach = 3.6;     // sizes of a cell beyond which nothing of it falls
constexpr double kMostWidening = 1.25; // of cells, aloft
constexpr double kLineAheadKm = 25;    // how far a line reaches
constexpr double kLineBehindKm = 190;
constexpr double kMostBendKm = 43;
constexpr double kClearAirKm = 110; // where clear air's own echo ends
constexpr double kCellReachKm = 90; // no less than any cell's
constexpr double kTileKm = 20;

/// The hook of a supercell: a ring around the middle of its rotation that is open ahead, where warm
/// air flows in and rain is held aloft. `offset` is from that middle, in the storm's frame.
double hookDbz(PlaneVector offset, double coreDbz, double current) {
    const double radius = offset.length();
    constexpr double kRingKm = 4.5;
    if (radius > 3 * kRingKm) {
        return current;
    }
    const double away = (radius - kRingKm) / 1.7;
    const double openAhead = smoothStep(.9, .2, offset.east / std::max(radius, .1));
    const double ring = (coreDbz - 10 - 7 * away * away) * openAhead;
    const double vault = 26 * std::exp(-radius * radius / 8);
    return std::max(current - vault, ring);
}

} // namespace

double lowestBeamHeightKm(double rangeKm) {
    constexpr double kSine = 0.0087265355; // of half a degree
    constexpr double kBentEarthKm = 4.0 / 3 * 6371;
    return rangeKm * kSine + rangeKm * rangeKm / (2 * kBentEarthKm);
}

PlaneVector stormMotionKnots(const SampleClimate& climate) {
    return kKnotsPerKmAMinute * climate.steeringSpeed * towards(climate.steeringAzimuth);
}

SampleSky::SampleSky(
    const SampleClimate& climate, std::int64_t minute, double reachKm, Detail detail
)
    : m_climate(climate), m_minute(static_cast<double>(minute)), m_detail(detail),
      m_lineAhead(towards(climate.lineAzimuth)),
      m_drift(m_minute * climate.steeringSpeed * towards(climate.steeringAzimuth)),
      m_storms(stormsAt(climate, m_minute, reachKm + kCellReachKm)) {
    for (const SampleStorm& storm : m_storms) {
        const double strength = storm.strengthAt(m_minute);
        m_cells.push_back(
            {storm.placeAt(m_minute), 1 / storm.motion.length() * storm.motion,
             storm.vortexAt(m_minute), strength, 22 + (storm.mostDbz - 22) * strength,
             storm.sizeKm * (.45 + .55 * strength), storm.rotating && strength > .35, storm.seed}
        );
    }
    std::copy_if(
        m_cells.begin(), m_cells.end(), std::back_inserter(m_turning),
        [](const Cell& cell) { return cell.rotating; }
    );
    for (const std::int64_t number : climate.linesNear(reachKm + 200, m_minute)) {
        Dice dice(mixed(climate.seed, number));
        m_lines.push_back(
            {climate.lineAt(number, m_minute), dice.between(.75, 1),
             mixed(climate.seed + 77, number)}
        );
    }
    sortCellsIntoTiles(reachKm);
}

// Most places lie in the reach of few cells: each tile of the plane knows which may matter in it.
void SampleSky::sortCellsIntoTiles(double reachKm) {
    m_tiles = 2 * static_cast<int>(std::ceil(reachKm / kTileKm));
    m_cellsOfTile.resize(static_cast<std::size_t>(m_tiles) * static_cast<std::size_t>(m_tiles));
    for (const Cell& cell : m_cells) {
        const double reach = kCellReach * kMostWidening * cell.sizeKm;
        const int left = std::max(tileOf(cell.place.east - reach), 0);
        const int right = std::min(tileOf(cell.place.east + reach), m_tiles - 1);
        const int bottom = std::max(tileOf(cell.place.north - reach), 0);
        const int top = std::min(tileOf(cell.place.north + reach), m_tiles - 1);
        for (int row = bottom; row <= top; ++row) {
            for (int column = left; column <= right; ++column) {
                m_cellsOfTile[tileIndex(column, row)].push_back(cell);
            }
        }
    }
}

// The number of the tile that a distance east or north of the antenna lies in.
int SampleSky::tileOf(double km) const {
    return static_cast<int>(std::floor(km / kTileKm)) + m_tiles / 2;
}

std::size_t SampleSky::tileIndex(int column, int row) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(m_tiles) +
           static_cast<std::size_t>(column);
}

// The cells that a place may lie in the reach of, and perhaps others.
const std::vector<SampleSky::Cell>& SampleSky::cellsNear(PlaneVector place) const {
    const int column = tileOf(place.east);
    const int row = tileOf(place.north);
    const bool isTiled = column >= 0 && column < m_tiles && row >= 0 && row < m_tiles;
    return isTiled ? m_cellsOfTile[tileIndex(column, row)] : m_cells;
}

// Texture moves with the weather. Two sheets of it at different speeds make it change on the way.
double SampleSky::textureAt(PlaneVector place) const {
    const PlaneVector slow = place - m_drift;
    const PlaneVector fast = place - 1.15 * m_drift;
    const bool fine = m_detail == Detail::fine;
    return .6 * fractalNoise(m_climate.seed + 11, slow.east / 9, slow.north / 9, fine ? 4 : 2) +
           .6 * fractalNoise(m_climate.seed + 23, fast.east / 14, fast.north / 14, fine ? 3 : 2);
}

double SampleSky::cellsDbz(PlaneVector place, double widening, double texture) const {
    double most = kNothing;
    for (const Cell& cell : cellsNear(place)) {
        const PlaneVector offset = place - cell.place;
        const double size = cell.sizeKm * widening;
        if (offset.dot(offset) > kCellReach * kCellReach * size * size) {
            continue;
        }
        // Steep behind, drawn out ahead by the wind aloft.
        double along = offset.dot(cell.ahead) / size;
        along *= along > 0 ? .62 : 1.25;
        const double across = offset.dot(cell.ahead.left()) / size;
        const double away = std::sqrt(along * along + across * across) * (1 + .5 * texture);
        const double skirt = 26 * cell.strength - 13 * away + 8 * texture;
        double dbz = skirt;
        // The power is costly, and never less than its base where the core could be outdone.
        const double coreBelow = cell.coreDbz - 30 * (away > 1 ? away : 0) + 6 * texture;
        if (coreBelow > skirt) {
            dbz = std::max(cell.coreDbz - 30 * std::pow(away, 1.2) + 6 * texture, skirt);
        }
        if (cell.rotating) {
            const PlaneVector toVortex = place - cell.vortex;
            dbz = hookDbz(
                {toVortex.dot(cell.ahead), toVortex.dot(cell.ahead.left())}, cell.coreDbz, dbz
            );
        }
        most = std::max(most, dbz);
    }
    return most;
}

// A squall line's front with the steady rain that trails it.
double SampleSky::lineDbz(const Line& line, PlaneVector place, double texture) const {
    if (!mayReach(line, place)) {
        return kNothing;
    }
    const double along = place.dot(m_lineAhead.left());
    const double bend = 35 * smoothNoise(line.seed, along / 160, m_minute / 300) +
                        8 * smoothNoise(line.seed + 1, along / 28, m_minute / 60);
    const double cross = place.dot(m_lineAhead) - line.atKm - bend;
    if (cross > kLineAheadKm || cross < -kLineBehindKm) {
        return kNothing;
    }
    // Lines have gaps.
    const double whole =
        smoothStep(-.75, -.1, smoothNoise(line.seed + 2, along / 120, m_minute / 200));
    // Steep ahead; behind, the heaviest rain falls off into the steady rain.
    const double slope = cross > 0 ? 5 * cross : -1.5 * cross;
    const double front = (52 - slope + 12 * texture) * whole;
    const double middle = (cross + 75 + 20 * texture) / 62;
    const double steady = 33 - 17 * middle * middle + 12 * texture;
    return line.strength * std::max(front, steady);
}

double SampleSky::linesDbz(PlaneVector place, double texture) const {
    double most = kNothing;
    for (const Line& line : m_lines) {
        most = std::max(most, lineDbz(line, place, texture));
    }
    return most;
}

// Whether a place is within a line's reach however the line is bent there.
bool SampleSky::mayReach(const Line& line, PlaneVector place) const {
    const double cross = place.dot(m_lineAhead) - line.atKm;
    return cross < kLineAheadKm + kMostBendKm && cross > -kLineBehindKm - kMostBendKm;
}

// Whether any rain could fall at a place: far cheaper to say than how much.
bool SampleSky::mayRain(PlaneVector place) const {
    const auto lineIsNear = [&](const Line& line) { return mayReach(line, place); };
    const auto cellIsNear = [&](const Cell& cell) {
        const PlaneVector offset = place - cell.place;
        const double reach = kCellReach * kMostWidening * cell.sizeKm;
        return offset.dot(offset) < reach * reach;
    };
    const auto& cells = cellsNear(place);
    return std::any_of(m_lines.begin(), m_lines.end(), lineIsNear) ||
           std::any_of(cells.begin(), cells.end(), cellIsNear);
}

double SampleSky::rainDbz(PlaneVector place) const {
    if (!mayRain(place)) {
        return kNothing;
    }
    const double texture = textureAt(place);
    return std::max(cellsDbz(place, 1, texture), linesDbz(place, texture));
}

double SampleSky::compositeDbz(PlaneVector place) const {
    if (!mayRain(place)) {
        return kNothing;
    }
    const double texture = textureAt(place);
    return std::max(cellsDbz(place, kMostWidening, texture) + 1.5, linesDbz(place, texture) + 3);
}

double SampleSky::clutterDbz(PlaneVector place) const {
    const double range = place.length();
    if (range > 60) {
        return kNothing;
    }
    // Hills stand where they stand; each kilometre of them answers a little differently each time.
    const double hills = smoothNoise(m_climate.seed + 31, place.east / 6, place.north / 6);
    const auto cell = static_cast<std::int64_t>(std::floor(place.east)) * 1000 +
                      static_cast<std::int64_t>(std::floor(place.north));
    const std::uint64_t ground = mixed(m_climate.seed + 37, cell);
    const double answer = asFraction(mixed(ground, static_cast<std::int64_t>(m_minute)));
    const double speckle = asFraction(ground);
    const double sees = std::exp(-range / 16);
    return speckle < .62 * sees + .25 * hills * sees ? 4 + 34 * sees * speckle * 2 + 6 * answer
                                                     : kNothing;
}

double SampleSky::lowestBeamDbz(PlaneVector place) const {
    const double range = place.length();
    if (range > kClearAirKm && !mayRain(place)) {
        return kNothing;
    }
    const double height = lowestBeamHeightKm(range);
    const double texture = textureAt(place);
    // Steady rain is shallow, storms are not.
    const double steady = linesDbz(place, texture) - 5 * std::max(0.0, height - 2.5);
    const double cells = cellsDbz(place, 1, texture) - 1.2 * std::max(0.0, height - 3.5);
    const double clearAir = std::min(4.4, 6 - range * .09 + 3 * texture);
    return std::max({steady, cells, clearAir, clutterDbz(place)});
}

PlaneVector SampleSky::windKnots(PlaneVector place) const {
    const double height = lowestBeamHeightKm(place.length());
    // Veering with height, as it does where storms live: the line without radial motion bends.
    const double up = std::min(height / 5.5, 1.0);
    const PlaneVector low = 20 * towards(m_climate.steeringAzimuth - 65);
    const PlaneVector high = 58 * towards(m_climate.steeringAzimuth + 12);
    PlaneVector wind = low + std::min(1.0, .12 + up) * (high - low);

    // No wind is even.
    const PlaneVector moved = place - m_drift;
    const double gust = fractalNoise(m_climate.seed + 61, moved.east / 30, moved.north / 30, 3);
    const double turn = fractalNoise(m_climate.seed + 67, moved.east / 45, moved.north / 45, 2);
    wind = (1 + .25 * gust) * wind + .25 * turn * wind.left();

    for (const Line& line : m_lines) {
        const double along = place.dot(m_lineAhead.left());
        const double cross = place.dot(m_lineAhead) - line.atKm -
                             35 * smoothNoise(line.seed, along / 160, m_minute / 300);
        // Cold air rushes out behind the front.
        const double outflow = smoothStep(4, -4, cross) * smoothStep(-70, -20, cross) * (1 - up);
        wind = wind + 24 * outflow * m_lineAhead;
    }
    for (const Cell& cell : m_turning) {
        const PlaneVector offset = place - cell.vortex;
        const double radius = std::max(offset.length(), .05);
        constexpr double kCoreKm = 3.2;
        constexpr double kMostKnots = 62;
        const double speed =
            kMostKnots * cell.strength *
            (radius < kCoreKm ? radius / kCoreKm : std::pow(kCoreKm / radius, 1.3));
        wind = wind + speed / radius * offset.left();
    }
    return wind;
}

} // namespace raincast
