// SPDX-License-Identifier: MIT
#include "map/mark_manager.h"

#include "geo/way.h"
#include "persist/serial_reader.h"
#include "persist/serial_writer.h"

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

constexpr float kWholeTurn = 360;
// A little more than half a turn, so that rounding leaves straight back on the side where it is.
constexpr float kHalfTurn = 180.0001F;
constexpr float kLeastStartMetres = 5;
// A mark on the equator as a target: a tenth of a millimetre off it, as 0 stands for no target.
constexpr double kBesideTheEquator = 1e-9;

double onEarth(double degrees, double most) {
    return std::isnan(degrees) ? 0 : std::clamp(degrees, -most, most);
}

template<typename List>
auto placeOf(List& marks, const COverlayMark& mark) {
    return std::find_if(marks.begin(), marks.end(), [&mark](const COverlayMark& each) {
        return &each == &mark;
    });
}

float relativeTo(float course, float bearing) {
    // Whatever a receiver calls a course, the turns below come to an end.
    float relative = bearing - std::fmod(std::isfinite(course) ? course : 0, kWholeTurn);
    while (relative > kHalfTurn) {
        relative -= kWholeTurn;
    }
    while (relative < -kHalfTurn) {
        relative += kWholeTurn;
    }
    return relative;
}

} // namespace

const SerializableType<CMarkManager> CMarkManager::cType{kTypeMarkManager};

CMarkManager::~CMarkManager() {
    clear();
}

COverlayMark& CMarkManager::add(const GeoPosition& position, const QString& name) {
    const GeoPosition place{onEarth(position.latitude, 90), onEarth(position.longitude, 360)};
    COverlayMark& mark = m_marks.emplace_back(place, name);
    mark.announceChanged();
    return mark;
}

void CMarkManager::rename(const COverlayMark& mark, const QString& name) {
    const auto place = placeOf(m_marks, mark);
    if (place == m_marks.end()) {
        return;
    }
    place->setName(name);
    if (isTarget(mark)) {
        m_target.name = place->name;
        m_navigation.targetName = place->name;
        Listener<NavigationData>::Notify(m_navigation);
    }
    place->announceChanged();
}

void CMarkManager::remove(const COverlayMark& mark) {
    const auto place = placeOf(m_marks, mark);
    if (place == m_marks.end()) {
        return;
    }
    if (isTarget(mark)) {
        clearTarget();
    }
    m_marks.erase(place);
}

void CMarkManager::clear() {
    clearTarget();
    while (!m_marks.empty()) {
        m_marks.pop_back(); // the last first: the list of overlays is searched from its end
    }
}

void CMarkManager::setTarget(const COverlayMark& mark) {
    if (placeOf(m_marks, mark) == m_marks.end() || !mark.isPlaced()) {
        return;
    }
    m_target = mark;
    if (m_target.latitude == 0) {
        m_target.latitude = kBesideTheEquator;
    }
    m_targetMark = &mark;
    dropNavigation();
}

void CMarkManager::clearTarget() {
    if (hasTarget()) {
        m_target = {};
        m_targetMark = nullptr;
        dropNavigation();
    }
}

// Forgets the way to the last target.
void CMarkManager::dropNavigation() {
    m_startLine = {};
    m_navigating = false;
    m_navigation = {m_target.name, 0, 0, 0, 0};
    Listener<NavigationData>::Notify(m_navigation);
}

const NavigationData* CMarkManager::navigation() const {
    return m_navigating ? &m_navigation : nullptr;
}

void CMarkManager::onPublished(CDataGPSPosition& position) {
    const bool placed = std::isfinite(position.latitude) && std::isfinite(position.longitude);
    if (!position.valid() || !placed) {
        return;
    }
    m_position = GeoPosition{position.latitude, position.longitude};
    if (hasTarget()) {
        navigate(position.course);
    }
}

void CMarkManager::navigate(float course) {
    const LocalOffset offset = shortWay(m_target.position(), *m_position);
    const auto east = static_cast<float>(offset.eastMetres);
    const auto north = static_cast<float>(offset.northMetres);
    const float distance = std::sqrt(north * north + east * east);
    if (!std::isfinite(distance)) {
        return; // a position that is not on the earth
    }
    m_navigation.distance = distance;
    m_navigation.bearing = bearingBack(east, north);
    m_navigation.relativeBearing = relativeTo(course, m_navigation.bearing);
    m_navigation.crossTrack = crossTrack(offset, distance);
    m_navigating = true;
    Listener<NavigationData>::Notify(m_navigation);
}

float CMarkManager::crossTrack(const LocalOffset& offset, float distance) {
    const auto east = static_cast<float>(offset.eastMetres);
    const auto north = static_cast<float>(offset.northMetres);
    if (!m_startLine.reference && distance > kLeastStartMetres) {
        m_startLine = {offset, -north / distance, east / distance};
        return 0;
    }
    return m_startLine.normalEast * north + m_startLine.normalNorth * east;
}

bool CMarkManager::Read(CSerialReader& reader) {
    std::int32_t count = 0;
    if (!reader.readValue(count)) {
        return false;
    }
    bool whole = count >= 0;
    COverlayMark mark;
    for (; count > 0 && !reader.atEnd(); --count) {
        if (mark.Read(reader)) {
            m_marks.emplace_back(mark).announceChanged();
        } else {
            whole = false;
        }
    }
    return whole && count <= 0;
}

bool CMarkManager::Write(CSerialWriter& writer) const {
    if (!writer.writeValue(static_cast<std::uint32_t>(m_marks.size()))) {
        return false;
    }
    return std::all_of(m_marks.begin(), m_marks.end(), [&writer](const COverlayMark& mark) {
        return mark.Write(writer);
    });
}

} // namespace raincast
