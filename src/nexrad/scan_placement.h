// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// Where a place lies as an antenna sees it.
struct PolarPlace {
    float azimuthDegrees; ///< clockwise from north, 0 to below 360
    float km;             ///< along the ground
};

/// The place of one position (degrees) as an antenna sees it.
///
/// Layers are drawn by latitude and longitude, so an echo must be too: its place is the end of the
/// great circle that leaves the antenna in the beam's direction, as long as the way along the
/// ground. (A flat earth with the pictures' degrees per pixel would put an echo 230 km away up to
/// 7 km beside the county it falls on.) The earth's flattening is met by the sphere that fits the
/// ellipsoid at the antenna (Gauss's); what remains is less than 100 metres, an eighth of a pixel.
[[nodiscard]] PolarPlace
seenFrom(double antennaLatitude, double antennaLongitude, double latitude, double longitude);

/// An angle's functions.
struct Angle {
    explicit Angle(double radians);

    double sine;
    double cosine;
    double halfSine;
};

/// A place on the ellipsoid, in degrees.
struct SpherePlace {
    double latitude;
    double longitude;
};

/// Gauss's sphere for one antenna: latitudes and longitudes on it are such that it fits the
/// ellipsoid to the third order around the antenna. All angles but the constructor's are radians.
class LocalSphere {
public:
    LocalSphere(double latitudeDegrees, double longitudeDegrees);

    [[nodiscard]] double radiusKm() const { return m_radiusKm; }
    [[nodiscard]] double antennaLatitude() const { return m_sphereLatitude; }

    /// Of a latitude on the ellipsoid.
    [[nodiscard]] double latitude(double degrees) const;

    /// East of the antenna; the short way round the globe.
    [[nodiscard]] double longitude(double degrees) const;

    /// Where a place lies that the antenna sees in a direction (degrees clockwise from north) at a
    /// distance along the ground: what seenFrom() makes of it is the same, within a metre.
    [[nodiscard]] SpherePlace placeAt(double azimuthDegrees, double km) const;

private:
    double m_latitude;
    double m_longitude;
    double m_stretch = 1;
    double m_radiusKm = 0;
    double m_sphereLatitude = 0;
};

/// One row of places: all on one latitude.
class Parallel {
public:
    Parallel(const LocalSphere& sphere, double latitudeDegrees);

    /// The place that lies east of the antenna by an angle on the sphere.
    [[nodiscard]] PolarPlace at(const Angle& east) const;

    [[nodiscard]] const Angle& antenna() const { return m_antenna; }
    [[nodiscard]] const Angle& latitude() const { return m_place; }
    /// North of the antenna.
    [[nodiscard]] const Angle& north() const { return m_north; }

private:
    double m_diameterKm;
    Angle m_antenna;
    Angle m_place;
    Angle m_north;
};

} // namespace raincast
