// SPDX-License-Identifier: MIT
#include "nexrad/pixel_places.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace raincast {

namespace {

constexpr float kNowhere = std::numeric_limits<float>::quiet_NaN();
constexpr float kQuarter = 900; // tenths of a degree
// Rounding is a thousandth of it.
constexpr double kBeyondReachKm = 1;

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

/// The arc whose half has a sine, in parts of the sphere's diameter: the first terms of the arc
/// sine's series, enough for kFurthestQuickKm.
float arc(float halfSine, float haversine) {
    return halfSine *
           (1 + haversine * (1.F / 6 +
                             haversine * (3.F / 40 +
                                          haversine * (15.F / 336 + haversine * (105.F / 3456)))));
}

/// Tenths of a degree of an angle whose tangent is 0 to 1 (Abramowitz and Stegun, 4.4.49: within
/// 2e-8 radians).
float tenthsOfTangent(float t) {
    constexpr float kTenthsOfRadian = 572.9577951F;
    const float t2 = t * t;
    float sum = 0.0028662257F;
    for (const float factor :
         {-0.0161657367F, 0.0429096138F, -0.0752896400F, 0.1065626393F, -0.1420889944F,
          0.1999355085F, -0.3333314528F, 1.F}) {
        sum = sum * t2 + factor;
    }
    return sum * t * kTenthsOfRadian;
}

/// Clockwise from north. NaN where both are 0: there is no direction.
float azimuthTenths(float east, float north) {
    const float x = std::abs(east);
    const float y = std::abs(north);
    const float first = tenthsOfTangent((x < y ? x : y) / (x < y ? y : x));
    const float quadrant = x < y ? first : kQuarter - first;
    const float half = north < 0 ? 2 * kQuarter - quadrant : quadrant;
    return east < 0 ? 4 * kQuarter - half : half;
}

} // namespace

struct PixelPlaces::Line {
    float haversine; ///< of the way north
    float cosines;   ///< of the antenna's latitude and the row's
    float north;     ///< sine of the way north
    float bend;      ///< what a column's haversine adds to it: parallels curve
    float cosine;    ///< of the row's latitude

    [[nodiscard]] float haversineAt(float eastHaversine) const {
        return haversine + cosines * eastHaversine;
    }
    [[nodiscard]] float northAt(float eastHaversine) const { return north + bend * eastHaversine; }
};

PixelPlaces::PixelPlaces(
    const ImageGeometry& image, double antennaLatitude, double antennaLongitude, double reachKm
) {
    prepareForMathematics();
    const LocalSphere sphere(antennaLatitude, antennaLongitude);
    m_diameterKm = static_cast<float>(2 * sphere.radiusKm());
    const double halfArc = (reachKm + kBeyondReachKm) / (2 * sphere.radiusKm());
    const double sine = std::sin(std::clamp(halfArc, 0., std::numbers::pi / 2));
    m_reach = static_cast<float>(sine * sine);
    m_rows.reserve(static_cast<std::size_t>(image.height()));
    for (int row = 0; row < image.height(); ++row) {
        m_rows.emplace_back(sphere, image.latitudeOfRow(row));
    }
    m_columns.reserve(static_cast<std::size_t>(image.width()));
    for (int column = 0; column < image.width(); ++column) {
        m_columns.emplace_back(sphere.longitude(image.longitudeOfColumn(column)));
    }
    m_eastSine.resize(m_columns.size() / kRunLength);
    m_eastHaversine.resize(m_eastSine.size());
    for (std::size_t i = 0; i < m_columns.size(); ++i) {
        const Angle& east = m_columns[i];
        m_eastSine[i / kRunLength][i % kRunLength] = static_cast<float>(east.sine);
        m_eastHaversine[i / kRunLength][i % kRunLength] =
            static_cast<float>(east.halfSine * east.halfSine);
    }
}

PolarPlace PixelPlaces::exact(int row, int column) const {
    return m_rows[static_cast<std::size_t>(row)].at(m_columns[static_cast<std::size_t>(column)]);
}

// The nearest pixel is at one end of the run, or on the meridian that it goes across: the
// antenna's, or the one beyond the pole.
bool PixelPlaces::isInReach(int row, std::size_t run) const {
    const Line line = lineOf(row);
    const PixelRun<float>& sine = m_eastSine[run];
    const PixelRun<float>& haversine = m_eastHaversine[run];
    const bool isAcross = (sine.front() < 0) != (sine.back() < 0);
    const auto [least, most] = std::minmax(haversine.front(), haversine.back());
    const bool isBeyondPole = line.cosines < 0;
    const float nearest = isBeyondPole ? (isAcross ? 1 : most) : (isAcross ? 0 : least);
    return line.haversineAt(nearest) <= m_reach;
}

PixelPlaces::Line PixelPlaces::lineOf(int row) const {
    const Parallel& parallel = m_rows[static_cast<std::size_t>(row)];
    const Angle& latitude = parallel.latitude();
    const Angle& north = parallel.north();
    return {
        static_cast<float>(north.halfSine * north.halfSine),
        static_cast<float>(parallel.antenna().cosine * latitude.cosine),
        static_cast<float>(north.sine),
        static_cast<float>(2 * parallel.antenna().sine * latitude.cosine),
        static_cast<float>(latitude.cosine)};
}

// The loops below are plain, so that the compiler does several pixels at a time.

void PixelPlaces::place(int row, std::size_t run, PolarRun& places) const {
    const Line line = lineOf(row);
    const PixelRun<float>& eastSine = m_eastSine[run];
    const PixelRun<float>& eastHaversine = m_eastHaversine[run];
    for (std::size_t i = 0; i < kRunLength; ++i) {
        const float haversine = line.haversineAt(eastHaversine[i]);
        const float km = m_diameterKm * arc(std::sqrt(haversine), haversine);
        places.km[i] = km < kFurthestQuickKm ? km : kNowhere;
        places.tenths[i] = azimuthTenths(eastSine[i] * line.cosine, line.northAt(eastHaversine[i]));
    }
}

void PixelPlaces::place(int row, std::size_t run, PlaneRun& places) const {
    const Line line = lineOf(row);
    const PixelRun<float>& eastSine = m_eastSine[run];
    const PixelRun<float>& eastHaversine = m_eastHaversine[run];
    for (std::size_t i = 0; i < kRunLength; ++i) {
        const float haversine = line.haversineAt(eastHaversine[i]);
        const float km = m_diameterKm * arc(std::sqrt(haversine), haversine);
        const float east = eastSine[i] * line.cosine;
        const float north = line.northAt(eastHaversine[i]);
        const float kmOfOne =
            (km < kFurthestQuickKm ? km : kNowhere) / std::sqrt(east * east + north * north);
        places.eastKm[i] = east * kmOfOne;
        places.northKm[i] = north * kmOfOne;
    }
}

} // namespace raincast
