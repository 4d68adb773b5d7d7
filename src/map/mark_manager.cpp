// SPDX-License-Identifier: MIT
#include "map/mark_manager.h"

#include "core/user_change.h"
#include "geo/way.h"
#include "persist/serial_reader.h"
#include "persist/serial_writer.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace raincast {

namespace {

constexpr float kWholeTurn = 360;
// A little more than half a turn, so that rounding leaves straight back on the side where it is.
constexpr float kHalfTurn = 180.0001F;
constexpr float kLeastStartMetres = 5;
constexpr double kMostStartMetres = 4.1e7; // once round the earth
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

MarkData targetOf(const MarkData& mark) {
    MarkData target = mark;
    if (target.latitude == 0) {
        target.latitude = kBesideTheEquator;
    }
    return target;
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
    UserChange::announce();
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
    UserChange::announce();
}

void CMarkManager::remove(const COverlayMark& mark) {
    const auto place = placeOf(m_marks, mark);
    if (place == m_marks.end()) {
        return;
    }
    if (isTarget(mark)) {
        dropTarget();
    }
    m_marks.erase(place);
    UserChange::announce();
}

CMarkManager::Kept CMarkManager::keep(const COverlayMark& mark) const {
    const auto place =
        static_cast<std::size_t>(std::distance(m_marks.begin(), placeOf(m_marks, mark)));
    return {mark, place, isTarget(mark), m_startLine.reference};
}

void CMarkManager::putBack(const Kept& kept) {
    const auto place = static_cast<std::ptrdiff_t>(std::min(kept.place, m_marks.size()));
    COverlayMark& mark = *m_marks.emplace(std::next(m_marks.begin(), place), kept.data);
    mark.announceChanged();
    if (kept.isTarget && !hasTarget()) {
        takeTarget(mark, kept.start);
    }
    UserChange::announce();
}

void CMarkManager::clear() {
    dropTarget();
    while (!m_marks.empty()) {
        m_marks.pop_back(); // the last first: the list of overlays is searched from its end
    }
}

void CMarkManager::takeFrom(CMarkManager& other) {
    clear();
    other.dropTarget();
    m_marks.splice(m_marks.end(), other.m_marks);
}

void CMarkManager::setTarget(const COverlayMark& mark) {
    if (placeOf(m_marks, mark) == m_marks.end() || !mark.isPlaced()) {
        return;
    }
    takeTarget(mark, std::nullopt);
    UserChange::announce();
}

void CMarkManager::takeTarget(const COverlayMark& mark, std::optional<LocalOffset> lineStart) {
    m_target = targetOf(mark);
    m_targetMark = &mark;
    dropNavigation();
    const LocalOffset start = lineStart.value_or(LocalOffset());
    const bool onEarth = start.lengthMetres() < kMostStartMetres;
    if (const auto line = onEarth ? lineFrom(start) : std::nullopt) {
        m_startLine = *line;
    }
}

void CMarkManager::clearTarget() {
    if (hasTarget()) {
        dropTarget();
        UserChange::announce();
    }
}

std::optional<CMarkManager::Target> CMarkManager::chosenTarget() const {
    return hasTarget() ? std::optional(Target{m_target, m_startLine.reference}) : std::nullopt;
}

bool CMarkManager::restoreTarget(const Target& target) {
    const auto found = std::find_if(m_marks.begin(), m_marks.end(), [&](const COverlayMark& mark) {
        const MarkData data = targetOf(mark);
        return mark.isPlaced() && data.name == target.mark.name &&
               data.position() == target.mark.position();
    });
    if (found == m_marks.end()) {
        return false;
    }
    takeTarget(*found, target.start);
    return true;
}

void CMarkManager::dropTarget() {
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
    m_navigation.crossTrack = crossTrack(offset);
    m_navigating = true;
    Listener<NavigationData>::Notify(m_navigation);
}

auto CMarkManager::lineFrom(const LocalOffset& start) -> std::optional<StartLine> {
    const auto east = static_cast<float>(start.eastMetres);
    const auto north = static_cast<float>(start.northMetres);
    const float distance = std::sqrt(north * north + east * east);
    if (!(distance > kLeastStartMetres)) {
        return std::nullopt;
    }
    return StartLine{start, -north / distance, east / distance};
}

float CMarkManager::crossTrack(const LocalOffset& offset) {
    const auto east = static_cast<float>(offset.eastMetres);
    const auto north = static_cast<float>(offset.northMetres);
    const auto line = m_startLine.reference ? std::nullopt : lineFrom(offset);
    if (line) {
        m_startLine = *line;
        UserChange::announce(); // it belongs to the target that the user has chosen
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
    for (; count > 0 && !reader.atEnd(); --count) {
        if (auto mark = COverlayMark::dataFrom(reader)) {
            m_marks.emplace_back(std::move(*mark)).announceChanged();
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
