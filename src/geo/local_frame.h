// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"

#include <cmath>

namespace raincast {

/// A way over the ground, in metres.
struct LocalOffset {
    double eastMetres = 0;
    double northMetres = 0;

    [[nodiscard]] double lengthMetres() const { return std::hypot(eastMetres, northMetres); }

    friend bool operator==(const LocalOffset&, const LocalOffset&) = default;
};

/// The earth taken as flat around an origin: metres per degree are those at the origin's latitude
/// everywhere. Good for the few hundred kilometres around a radar. Longitudes are not wrapped: two
/// places on either side of 180 degrees are a whole turn apart.
class LocalFrame {
public:
    /// A frame without an origin: all metres per degree are 0.
    LocalFrame() = default;
    explicit LocalFrame(GeoPosition origin) { setOrigin(origin); }

    /// A latitude beyond a pole (or one that is not a number) has the metres per degree of 45.
    void setOrigin(GeoPosition origin);

    [[nodiscard]] GeoPosition origin() const { return m_origin; }
    [[nodiscard]] double metresPerDegreeLat() const { return m_metresPerDegreeLat; }
    /// 0 at the poles.
    [[nodiscard]] double metresPerDegreeLon() const { return m_metresPerDegreeLon; }

    /// The way from the origin to a position.
    [[nodiscard]] LocalOffset toMetres(GeoPosition position) const;

    /// The position at the end of a way from the origin. At the poles its longitude is infinite or
    /// not a number.
    [[nodiscard]] GeoPosition fromMetres(LocalOffset offset) const;

    /// Straight metres from the origin to a position.
    [[nodiscard]] double distanceMetres(GeoPosition position) const;

    /// The way of a length along a bearing: degrees clockwise from north, metres. Reckoned in
    /// single precision.
    [[nodiscard]] static LocalOffset alongBearing(float bearingDegrees, float lengthMetres);

private:
    GeoPosition m_origin;
    double m_metresPerDegreeLat = 0;
    double m_metresPerDegreeLon = 0;
};

} // namespace raincast
