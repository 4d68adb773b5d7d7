// SPDX-License-Identifier: MIT
#include "navigator_sim/route.h"

#include <QStringList>

#include <cmath>
#include <numbers>

namespace navigator_sim {

namespace {

constexpr double kMilesPerDegree = 60;
constexpr double kSecondsPerHour = 3600;
constexpr double kRadians = std::numbers::pi / 180;

} // namespace

double Route::Leg::miles() const {
    return std::hypot(northMiles, eastMiles);
}

Route::Route(std::vector<Place> places, double speedKnots)
    : m_places(std::move(places)), m_speedKnots(speedKnots) {}

std::optional<std::vector<Place>> Route::parse(const QString& text) {
    std::vector<Place> places;
    for (const QString& word : text.split(u' ', Qt::SkipEmptyParts)) {
        const QStringList numbers = word.split(u',');
        bool north = false;
        bool east = false;
        const Place place{numbers.value(0).toDouble(&north), numbers.value(1).toDouble(&east)};
        if (!north || !east || numbers.size() != 2) {
            return std::nullopt;
        }
        places.push_back(place);
    }
    return places.size() >= 2 ? std::optional(places) : std::nullopt;
}

Route::Leg Route::leg() const {
    const Place& from = m_places[m_leg];
    const double northMiles = (end().latitude - from.latitude) * kMilesPerDegree;
    const double eastDegrees = std::remainder(end().longitude - from.longitude, 360.0);
    return {northMiles, eastDegrees * kMilesPerDegree * std::cos(from.latitude * kRadians)};
}

void Route::advance() {
    m_gone += m_speedKnots / kSecondsPerHour;
    if (m_gone >= leg().miles()) {
        m_gone = 0;
        m_leg = (m_leg + 1) % m_places.size();
    }
}

Place Route::place() const {
    const Place& from = m_places[m_leg];
    const double miles = leg().miles();
    const double share = miles > 0 ? m_gone / miles : 0;
    const double eastDegrees = std::remainder(end().longitude - from.longitude, 360.0);
    return {
        from.latitude + share * (end().latitude - from.latitude),
        std::remainder(from.longitude + share * eastDegrees, 360.0)};
}

double Route::courseDegrees() const {
    const double degrees = std::atan2(leg().eastMiles, leg().northMiles) / kRadians;
    return degrees < 0 ? degrees + 360 : degrees;
}

} // namespace navigator_sim
