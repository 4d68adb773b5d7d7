// SPDX-License-Identifier: MIT
#include "nexrad/scan_placement.h"

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kDegree = kPi / 180;

// The WGS 84 ellipsoid.
constexpr double kEquatorKm = 6378.137;
constexpr double kFlattening = 1 / 298.257223563;
constexpr double kEccentricity2 = kFlattening * (2 - kFlattening);

/// Kilometres to the centre of curvature along the meridian.
double meridianRadiusKm(double latitude) {
    const double s = std::sin(latitude);
    const double w2 = 1 - kEccentricity2 * s * s;
    return kEquatorKm * (1 - kEccentricity2) / (w2 * std::sqrt(w2));
}

/// An angle of -180 to 180 degrees as 0 to below 360: rounding may make 360 of one just left of
/// north, which then is north.
float clockwiseDegrees(double degrees) {
    const auto result = static_cast<float>(degrees < 0 ? degrees + 360 : degrees);
    return result < 360 ? result : 0;
}

} // namespace

Angle::Angle(double radians)
    : sine(std::sin(radians)), cosine(std::cos(radians)), halfSine(std::sin(radians / 2)) {}

LocalSphere::LocalSphere(double latitudeDegrees, double longitudeDegrees)
    : m_latitude(latitudeDegrees * kDegree), m_longitude(longitudeDegrees * kDegree) {
    const double c = std::cos(m_latitude);
    const double s = std::sin(m_latitude);
    const double c4 = c * c * c * c;
    m_stretch = std::sqrt(1 + kEccentricity2 / (1 - kEccentricity2) * c4);
    const double transverseKm = kEquatorKm / std::sqrt(1 - kEccentricity2 * s * s);
    m_radiusKm = std::sqrt(meridianRadiusKm(m_latitude) * transverseKm);
    m_sphereLatitude = std::asin(s / m_stretch);
}

double LocalSphere::latitude(double degrees) const {
    const double difference = degrees * kDegree - m_latitude;
    const double arcKm = meridianRadiusKm(m_latitude + difference / 2) * difference;
    return m_sphereLatitude + arcKm / m_radiusKm;
}

double LocalSphere::longitude(double degrees) const {
    return std::remainder(degrees * kDegree - m_longitude, 2 * kPi) * m_stretch;
}

SpherePlace LocalSphere::placeAt(double azimuthDegrees, double km) const {
    const double arc = km / m_radiusKm;
    const double azimuth = azimuthDegrees * kDegree;
    const double sine = std::sin(m_sphereLatitude);
    const double cosine = std::cos(m_sphereLatitude);
    const double placeSine = sine * std::cos(arc) + cosine * std::sin(arc) * std::cos(azimuth);
    const double east =
        std::atan2(std::sin(azimuth) * std::sin(arc) * cosine, std::cos(arc) - sine * placeSine);
    // latitude() the other way round; each step leaves a thousandth of the error.
    const double northKm =
        (std::asin(std::clamp(placeSine, -1., 1.)) - m_sphereLatitude) * m_radiusKm;
    double north = northKm / meridianRadiusKm(m_latitude);
    for (int i = 0; i < 2; ++i) {
        north = northKm / meridianRadiusKm(m_latitude + north / 2);
    }
    return {(m_latitude + north) / kDegree, (m_longitude + east / m_stretch) / kDegree};
}

Parallel::Parallel(const LocalSphere& sphere, double latitudeDegrees)
    : m_diameterKm(2 * sphere.radiusKm()), m_antenna(sphere.antennaLatitude()),
      m_place(sphere.latitude(latitudeDegrees)),
      m_north(sphere.latitude(latitudeDegrees) - sphere.antennaLatitude()) {}

PolarPlace Parallel::at(const Angle& east) const {
    const double haversine = m_north.halfSine * m_north.halfSine +
                             m_antenna.cosine * m_place.cosine * east.halfSine * east.halfSine;
    const double north =
        m_antenna.cosine * m_place.sine - m_antenna.sine * m_place.cosine * east.cosine;
    const double azimuth = std::atan2(east.sine * m_place.cosine, north) / kDegree;
    const double km = m_diameterKm * std::asin(std::min(1.0, std::sqrt(haversine)));
    return {clockwiseDegrees(azimuth), static_cast<float>(km)};
}

PolarPlace
seenFrom(double antennaLatitude, double antennaLongitude, double latitude, double longitude) {
    const LocalSphere sphere(antennaLatitude, antennaLongitude);
    return Parallel(sphere, latitude).at(Angle(sphere.longitude(longitude)));
}

} // namespace raincast
