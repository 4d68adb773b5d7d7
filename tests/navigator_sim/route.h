// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace navigator_sim {

struct Place {
    double latitude = 0;  ///< degrees, north positive
    double longitude = 0; ///< degrees, east positive
};

/// A round trip over a few places at a steady speed, straight on the map: short ways, so that the
/// earth counts as flat.
class Route {
public:
    Route(std::vector<Place> places, double speedKnots);

    /// "43.65,-79.38 43.70,-79.30 ...": two places or more; empty when it makes no sense.
    [[nodiscard]] static std::optional<std::vector<Place>> parse(const QString& text);

    /// Moves on by a second.
    void advance();

    [[nodiscard]] Place place() const;
    [[nodiscard]] double courseDegrees() const;
    [[nodiscard]] double speedKnots() const { return m_speedKnots; }

private:
    struct Leg {
        double northMiles;
        double eastMiles;
        [[nodiscard]] double miles() const;
    };
    [[nodiscard]] const Place& end() const { return m_places[(m_leg + 1) % m_places.size()]; }
    [[nodiscard]] Leg leg() const;

    std::vector<Place> m_places;
    double m_speedKnots;
    std::size_t m_leg = 0;
    double m_gone = 0; ///< nautical miles of the leg
};

} // namespace navigator_sim
