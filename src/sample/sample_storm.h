// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

namespace raincast {

/// East and north, in kilometres from the antenna, or a speed in kilometres a minute or knots.
struct PlaneVector {
    double east = 0;
    double north = 0;

    friend PlaneVector operator+(PlaneVector a, PlaneVector b) {
        return {a.east + b.east, a.north + b.north};
    }
    friend PlaneVector operator-(PlaneVector a, PlaneVector b) {
        return {a.east - b.east, a.north - b.north};
    }
    friend PlaneVector operator*(double factor, PlaneVector v) {
        return {factor * v.east, factor * v.north};
    }
    [[nodiscard]] double dot(PlaneVector other) const {
        return east * other.east + north * other.north;
    }
    [[nodiscard]] double length() const { return std::sqrt(dot(*this)); }
    /// A quarter turn to the left.
    [[nodiscard]] PlaneVector left() const { return {-north, east}; }
};

/// The unit vector that points to an azimuth, degrees clockwise from north.
[[nodiscard]] PlaneVector towards(double azimuthDegrees);

/// A storm of the sample weather from birth to death. Minutes count from 1970.
struct SampleStorm {
    double birthMinute = 0;
    double lifeMinutes = 0;
    PlaneVector birthPlace;
    PlaneVector motion;     ///< km a minute
    double mostDbz = 0;     ///< in its core at its best
    double sizeKm = 0;      ///< from the core to light rain, at its best
    bool rotating = false;  ///< a supercell: a hook, and a couplet in the velocities
    std::uint64_t seed = 0; ///< of its texture

    [[nodiscard]] PlaneVector placeAt(double minute) const {
        return birthPlace + (minute - birthMinute) * motion;
    }
    /// 0 when it does not live, 1 at its best.
    [[nodiscard]] double strengthAt(double minute) const;
    /// Kilometres along its motion and to the left of it.
    [[nodiscard]] PlaneVector inItsFrame(PlaneVector place, double minute) const;
    /// The middle of its rotation.
    [[nodiscard]] PlaneVector vortexAt(double minute) const;
};

/// The climate of a site, which never changes: where its weather comes from.
struct SampleClimate {
    explicit SampleClimate(std::uint64_t siteSeed);

    std::uint64_t seed;
    double steeringAzimuth; ///< degrees that storms move to
    double steeringSpeed;   ///< km a minute
    double lineAzimuth;     ///< degrees that squall lines move to
    double lineSpeed;       ///< km a minute
    double lineOffsetKm;    ///< where the line of number 0 was in 1970

    /// The distance between one line and the next.
    static constexpr double kLineDistanceKm = 560;

    /// How far ahead of the antenna the line of a number is, along its way.
    [[nodiscard]] double lineAt(std::int64_t number, double minute) const;
    /// The numbers of the lines within `reachKm` of the antenna.
    [[nodiscard]] std::vector<std::int64_t> linesNear(double reachKm, double minute) const;
};

/// All storms that live at a minute and whose middle is within `reachKm` of the antenna.
[[nodiscard]] std::vector<SampleStorm>
stormsAt(const SampleClimate& climate, double minute, double reachKm);

} // namespace raincast
