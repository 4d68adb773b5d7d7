// SPDX-License-Identifier: MIT
#include "geo/local_frame.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <numbers>

namespace raincast {

namespace {

constexpr double kMetresPerNauticalMile = 1852;
constexpr int kWholeDegrees = 91;
using DegreeTable = std::array<double, kWholeDegrees>;

// Nautical miles per degree of latitude at each whole degree of latitude. Not the ellipsoid's:
// distances have always been reckoned with these, and the choice of a site hangs on them.
constexpr double kLatitudeMiles[] = {
    59.70533251357, 59.70551635746, 59.7060676663,  59.70698577172, 59.70826956048, 59.70991747625,
    59.71192752103, 59.71429725772, 59.71702381314, 59.72010388113, 59.72353372636, 59.72730919005,
    59.7314256934,  59.73587824401, 59.74066144114, 59.74576948292, 59.75119617293, 59.7569349276,
    59.76297878434, 59.7693204091,  59.7759521067,  59.78286582847, 59.79005318274, 59.79750544389,
    59.80521356551, 59.81316818811, 59.82135965216, 59.82977800786, 59.83841303105, 59.84725423101,
    59.85629086574, 59.86551195396, 59.87490628873, 59.88446245004, 59.89416882132, 59.90401359894,
    59.91398481181, 59.92407033123, 59.93425788786, 59.94453508618, 59.95488942042, 59.96530828608,
    59.97577900246, 59.98628881898, 59.99682493821, 60.00737452742, 60.01792473455, 60.02846270555,
    60.03897559875, 60.04945060033, 60.05987494128, 60.07023591169, 60.0805208763,  60.09071729085,
    60.10081271658, 60.11079483655, 60.12065146935, 60.13037058387, 60.13994031668, 60.14934898388,
    60.1585850958,  60.16763737197, 60.17649475607, 60.18514642783, 60.19358181365, 60.20179060604,
    60.20976277126, 60.21748856573, 60.22495854387, 60.23216357112, 60.23909483607, 60.24574386178,
    60.25210251645, 60.25816302068, 60.26391796059, 60.269360293,   60.27448335861, 60.27928088748,
    60.28374700926, 60.28787625722, 60.29166357516, 60.29510432761, 60.29819430131, 60.30092971467,
    60.30330721835, 60.30532389961, 60.30697728996, 60.30826536392, 60.30918654561, 60.30973970626,
    60.30973970626,
};
static_assert(std::size(kLatitudeMiles) == kWholeDegrees);

// Nautical miles per degree of longitude on the WGS 84 ellipsoid at each whole degree of latitude.
DegreeTable longitudeMiles() {
    constexpr double kSemiMajorMetres = 6378137;
    constexpr double kFlattening = 1 / 298.257223563;
    constexpr double kEccentricitySquare = kFlattening * (2 - kFlattening);
    DegreeTable table{};
    // The pole's entry stays exactly zero, which the cosine of a rounded right angle is not.
    for (int degree = 0; degree < kWholeDegrees - 1; ++degree) {
        const double phi = degree * std::numbers::pi / 180;
        const double sine = std::sin(phi);
        const double metres = std::numbers::pi * kSemiMajorMetres * std::cos(phi) /
                              (180 * std::sqrt(1 - kEccentricitySquare * sine * sine));
        table[static_cast<std::size_t>(degree)] = metres / kMetresPerNauticalMile;
    }
    return table;
}

template<typename Table>
double interpolated(const Table& table, double latitude) {
    const double degrees = std::fabs(latitude);
    if (!(degrees <= 90)) {
        return table[45];
    }
    const auto whole = static_cast<std::size_t>(degrees);
    const double fraction = degrees - static_cast<double>(whole);
    if (fraction == 0) {
        return table[whole];
    }
    return (1 - fraction) * table[whole] + fraction * table[whole + 1];
}

} // namespace

void LocalFrame::setOrigin(GeoPosition origin) {
    static const DegreeTable longitudeTable = longitudeMiles();
    m_origin = origin;
    m_metresPerDegreeLat = interpolated(kLatitudeMiles, origin.latitude) * kMetresPerNauticalMile;
    m_metresPerDegreeLon = interpolated(longitudeTable, origin.latitude) * kMetresPerNauticalMile;
}

LocalOffset LocalFrame::toMetres(GeoPosition position) const {
    return {
        (position.longitude - m_origin.longitude) * m_metresPerDegreeLon,
        (position.latitude - m_origin.latitude) * m_metresPerDegreeLat};
}

GeoPosition LocalFrame::fromMetres(LocalOffset offset) const {
    return {
        offset.northMetres / m_metresPerDegreeLat + m_origin.latitude,
        offset.eastMetres / m_metresPerDegreeLon + m_origin.longitude};
}

double LocalFrame::distanceMetres(GeoPosition position) const {
    const LocalOffset way = toMetres(position);
    return std::sqrt(way.eastMetres * way.eastMetres + way.northMetres * way.northMetres);
}

LocalOffset LocalFrame::alongBearing(float bearingDegrees, float lengthMetres) {
    const float radians = bearingDegrees * 0.017453292F;
    const float east = std::sin(radians) * lengthMetres;
    const float north = std::cos(radians) * lengthMetres;
    return {east, north};
}

} // namespace raincast
