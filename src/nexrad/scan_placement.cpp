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

/// Gauss's sphere for one antenna: latitudes and longitudes on it are such that it fits the
/// ellipsoid to the third order around the antenna. All angles are radians.
class LocalSphere {
public:
    LocalSphere(double latitudeDegrees, double longitudeDegrees)
        : m_latitude(latitudeDegrees * kDegree), m_longitude(longitudeDegrees * kDegree) {
        const double c = std::cos(m_latitude);
        const double s = std::sin(m_latitude);
        const double c4 = c * c * c * c;
        m_stretch = std::sqrt(1 + kEccentricity2 / (1 - kEccentricity2) * c4);
        const double transverseKm = kEquatorKm / std::sqrt(1 - kEccentricity2 * s * s);
        m_radiusKm = std::sqrt(meridianRadiusKm(m_latitude) * transverseKm);
        m_sphereLatitude = std::asin(s / m_stretch);
    }

    [[nodiscard]] double radiusKm() const { return m_radiusKm; }
    [[nodiscard]] double antennaLatitude() const { return m_sphereLatitude; }

    [[nodiscard]] double latitude(double degrees) const {
        const double difference = degrees * kDegree - m_latitude;
        const double arcKm = meridianRadiusKm(m_latitude + difference / 2) * difference;
        return m_sphereLatitude + arcKm / m_radiusKm;
    }

    /// East of the antenna; the short way round the globe.
    [[nodiscard]] double longitude(double degrees) const {
        return std::remainder(degrees * kDegree - m_longitude, 2 * kPi) * m_stretch;
    }

private:
    double m_latitude;
    double m_longitude;
    double m_stretch = 1;
    double m_radiusKm = 0;
    double m_sphereLatitude = 0;
};

/// An angle and its functions.
struct Angle {
    explicit Angle(double radians)
        : sine(std::sin(radians)), cosine(std::cos(radians)), halfSine(std::sin(radians / 2)) {}

    double sine;
    double cosine;
    double halfSine;
};

#if defined(__x86_64__)
/// The C library's functions come in a form for newer processors. Where somebody has left the upper
/// halves of its registers in use, each change between these forms and our own code waits for them:
/// all that follows then takes ten times as long.
[[gnu::target("avx")]] void releaseUpperHalves() {
    __builtin_ia32_vzeroupper();
}

void prepareForMathematics() {
    if (__builtin_cpu_supports("avx") != 0) {
        releaseUpperHalves();
    }
}
#else
void prepareForMathematics() {}
#endif

/// An angle of -180 to 180 degrees as 0 to below 360: rounding may make 360 of one just left of
/// north, which then is north.
float clockwiseDegrees(double degrees) {
    const auto result = static_cast<float>(degrees < 0 ? degrees + 360 : degrees);
    return result < 360 ? result : 0;
}

/// One row of places: all on one latitude.
class Parallel {
public:
    Parallel(const LocalSphere& sphere, double latitudeDegrees)
        : m_diameterKm(2 * sphere.radiusKm()), m_antenna(sphere.antennaLatitude()),
          m_place(sphere.latitude(latitudeDegrees)),
          m_halfSine(Angle(sphere.latitude(latitudeDegrees) - sphere.antennaLatitude()).halfSine) {}

    [[nodiscard]] PolarPlace at(const Angle& east) const {
        const double haversine = m_halfSine * m_halfSine +
                                 m_antenna.cosine * m_place.cosine * east.halfSine * east.halfSine;
        const double north =
            m_antenna.cosine * m_place.sine - m_antenna.sine * m_place.cosine * east.cosine;
        const double azimuth = std::atan2(east.sine * m_place.cosine, north) / kDegree;
        const double km = m_diameterKm * std::asin(std::min(1.0, std::sqrt(haversine)));
        return {clockwiseDegrees(azimuth), static_cast<float>(km)};
    }

private:
    double m_diameterKm;
    Angle m_antenna;
    Angle m_place;
    double m_halfSine;
};

} // namespace

PolarPlace
seenFrom(double antennaLatitude, double antennaLongitude, double latitude, double longitude) {
    const LocalSphere sphere(antennaLatitude, antennaLongitude);
    return Parallel(sphere, latitude).at(Angle(sphere.longitude(longitude)));
}

std::vector<PolarPlace>
placePixels(const ImageGeometry& image, double antennaLatitude, double antennaLongitude) {
    prepareForMathematics();
    const LocalSphere sphere(antennaLatitude, antennaLongitude);
    std::vector<Angle> columns;
    columns.reserve(kFrameWidth);
    for (int column = 0; column < kFrameWidth; ++column) {
        columns.emplace_back(sphere.longitude(image.longitudeOfColumn(column)));
    }
    std::vector<PolarPlace> places;
    places.reserve(std::size_t{kFrameWidth} * kFrameHeight);
    for (int row = 0; row < kFrameHeight; ++row) {
        const Parallel parallel(sphere, image.latitudeOfRow(row));
        for (const Angle& column : columns) {
            places.push_back(parallel.at(column));
        }
    }
    return places;
}

} // namespace raincast
