// SPDX-License-Identifier: MIT
#pragma once

#include "sample/sample_storm.h"

#include <cstdint>
#include <vector>

namespace raincast {

/// The sample weather over one site at one minute, asked place by place. Places are kilometres from
/// the antenna on the plane that keeps directions and distances.
class SampleSky {
public:
    /// How small the texture of rain gets: for sums over a coarse grid the smallest is left out.
    enum class Detail { fine, coarse };

    /// `reachKm`: how far from the antenna places will be.
    SampleSky(
        const SampleClimate& climate, std::int64_t minute, double reachKm,
        Detail detail = Detail::fine
    );

    /// dBZ of the rain at a place: storms, squall lines and the steady rain behind them.
    /// kNothing where no rain falls.
    [[nodiscard]] double rainDbz(PlaneVector place) const;

    /// dBZ as the lowest beam sees it: rain, less of it far away where the beam is high above it,
    /// ground clutter and the clear air's own faint echo near the antenna.
    [[nodiscard]] double lowestBeamDbz(PlaneVector place) const;

    /// The greatest dBZ of all beams: storms are wider aloft.
    [[nodiscard]] double compositeDbz(PlaneVector place) const;

    /// Whether the lowest beam sees the ground at a place.
    [[nodiscard]] bool isClutter(PlaneVector place) const { return clutterDbz(place) > 0; }

    /// The wind where the lowest beam passes, in knots.
    [[nodiscard]] PlaneVector windKnots(PlaneVector place) const;

    [[nodiscard]] const std::vector<SampleStorm>& storms() const { return m_storms; }

    static constexpr double kNothing = -30;

private:
    /// A storm at one minute.
    struct Cell {
        PlaneVector place;
        PlaneVector ahead; ///< the unit vector of its motion
        PlaneVector vortex;
        double strength;
        double coreDbz;
        double sizeKm;
        bool rotating;
        std::uint64_t seed;
    };
    struct Line {
        double atKm;
        double strength;
        std::uint64_t seed;
    };

    void sortCellsIntoTiles(double reachKm);
    [[nodiscard]] int tileOf(double km) const;
    [[nodiscard]] std::size_t tileIndex(int column, int row) const;
    [[nodiscard]] const std::vector<Cell>& cellsNear(PlaneVector place) const;
    [[nodiscard]] bool mayReach(const Line& line, PlaneVector place) const;
    [[nodiscard]] bool mayRain(PlaneVector place) const;
    [[nodiscard]] double clutterDbz(PlaneVector place) const;
    [[nodiscard]] double cellsDbz(PlaneVector place, double widening, double texture) const;
    [[nodiscard]] double lineDbz(const Line& line, PlaneVector place, double texture) const;
    [[nodiscard]] double linesDbz(PlaneVector place, double texture) const;
    [[nodiscard]] double textureAt(PlaneVector place) const;

    SampleClimate m_climate;
    double m_minute;
    Detail m_detail;
    PlaneVector m_lineAhead; ///< the unit vector of the lines' way
    PlaneVector m_drift;     ///< how far texture has moved since 1970
    std::vector<SampleStorm> m_storms;
    std::vector<Cell> m_cells;
    std::vector<Cell> m_turning; ///< the cells that turn the wind
    std::vector<Line> m_lines;
    int m_tiles = 0; ///< along each edge of the square around the reach
    std::vector<std::vector<Cell>> m_cellsOfTile;
};

/// The mean motion of a climate's storms, in knots.
[[nodiscard]] PlaneVector stormMotionKnots(const SampleClimate& climate);

/// Kilometres above the antenna of the lowest beam's middle, half a degree up, in the standard
/// atmosphere.
[[nodiscard]] double lowestBeamHeightKm(double rangeKm);

} // namespace raincast
