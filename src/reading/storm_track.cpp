// SPDX-License-Identifier: MIT
#include "reading/storm_track.h"

#include "geo/way.h"

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

constexpr double kKnotsPerMetreASecond = 3600 / 1852.0;
constexpr double kLeastKnots = 2;
// A storm is some kilometres wide, and two touches tell its way to about ten degrees.
constexpr double kStormHalfWidth = 8'000;
constexpr double kDoubtOfWay = 0.18; // the tangent of ten degrees

double secondsBetween(FileTime first, FileTime last) {
    return static_cast<double>(last - first) / kFileTimePerSecond;
}

} // namespace

StormTrack::StormTrack(const Seen& first, const Seen& last) : m_last(last) {
    const double seconds = secondsBetween(first.time, last.time);
    if (seconds > 0) {
        const LocalOffset way = shortWay(first.place, last.place);
        m_motion = {way.eastMetres / seconds, way.northMetres / seconds};
    }
}

double StormTrack::knots() const {
    return m_motion.lengthMetres() * kKnotsPerMetreASecond;
}

double StormTrack::bearing() const {
    return bearingBack(
        static_cast<float>(-m_motion.eastMetres), static_cast<float>(-m_motion.northMetres)
    );
}

bool StormTrack::standsStill() const {
    return knots() < kLeastKnots;
}

GeoPosition StormTrack::placeAt(FileTime time) const {
    const double seconds = secondsBetween(m_last.time, time);
    return LocalFrame(m_last.place)
        .fromMetres({m_motion.eastMetres * seconds, m_motion.northMetres * seconds});
}

std::optional<StormTrack::Passing> StormTrack::passing(GeoPosition place) const {
    if (standsStill()) {
        return std::nullopt;
    }
    const LocalOffset way = shortWay(m_last.place, place);
    const double speed = m_motion.lengthMetres();
    const double ahead =
        (way.eastMetres * m_motion.eastMetres + way.northMetres * m_motion.northMetres) / speed;
    if (ahead < 0) {
        return std::nullopt;
    }
    const double seconds = ahead / speed;
    const LocalOffset toStorm{
        m_motion.eastMetres * seconds - way.eastMetres,
        m_motion.northMetres * seconds - way.northMetres};
    Passing passing;
    passing.time = m_last.time + static_cast<FileTime>(seconds * kFileTimePerSecond);
    passing.metres = toStorm.lengthMetres();
    passing.bearing = bearingBack(
        static_cast<float>(-toStorm.eastMetres), static_cast<float>(-toStorm.northMetres)
    );
    passing.reaches = passing.metres <= std::max(kStormHalfWidth, kDoubtOfWay * ahead);
    return passing;
}

} // namespace raincast
