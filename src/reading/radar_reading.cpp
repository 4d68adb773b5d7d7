// SPDX-License-Identifier: MIT
#include "reading/radar_reading.h"

#include "core/text.h"
#include "map/map_label.h"
#include "map/mark_names.h"
#include "palette/nws_colours.h"
#include "reading/map_line.h"
#include "reading/measuring.h"
#include "reading/range_rings.h"
#include "reading/reading_setting.h"
#include "reading/readout.h"
#include "reading/text_picture.h"
#include "units/units.h"

#include <QPainter>

#include <bit>
#include <utility>

namespace raincast {

namespace {

constexpr FileTime kTrackStep = 15 * kFileTimePerMinute;
constexpr int kTrackSteps = 4;
constexpr QChar kTimes(0x00D7); // as the button that closes a window

QString clockText(FileTime time) {
    return Text::clock(toLocalCalendar(time));
}

/// `ofTime` where the time of the picture is known.
QString touchText(const RadarSight& sight, const char* any, const char* ofTime) {
    return sight.frameTime ? Text::of(ofTime).arg(clockText(*sight.frameTime)) : Text::of(any);
}

/// The level of the pixel under a point; none for a colour that the table lacks or without one.
std::optional<std::size_t> levelAt(const RadarSight& sight, QPoint place) {
    const int steps = std::countr_zero(static_cast<unsigned>(sight.frame.detail));
    const ImagePixel pixel = sight.map.view.finer(steps).toImage({place.x(), place.y()});
    if (!sight.frame || !sight.frame->valid(pixel.column, pixel.row)) {
        return std::nullopt;
    }
    const QRgb colour = sight.frame->pixel(pixel.column, pixel.row);
    return nwsLevelOf(quantityOf(sight.product), colour);
}

bool onImage(const RadarSight& sight, QPoint place) {
    const ImagePixel pixel = sight.map.view.toImage({place.x(), place.y()});
    const GeoReference& reference = sight.map.reference;
    return sight.placed && sight.map.area.contains(place) && pixel.column >= 0 &&
           pixel.column < reference.width() && pixel.row >= 0 && pixel.row < reference.height();
}

/// Writes a time beside a place of a way, unless it would lie over the one that was written last.
/// Returns where the last one stands then.
QRect drawTimeBeside(
    QPainter& painter, QPoint place, QPoint way, const QString& time, const QRect& last
) {
    const QFontMetrics metrics = painter.fontMetrics();
    const int height = metrics.height();
    const int aside = way.x() * way.y() > 0 ? -height : height;
    const QPoint middle = place + QPoint(height / 2, aside * 3 / 4);
    const QRect box(
        middle - QPoint(0, height / 2), QSize(metrics.horizontalAdvance(time) + height / 2, height)
    );
    if (box.intersects(last)) {
        return last;
    }
    drawMapLabel(painter, middle, time);
    return box;
}

QString arrivalText(const QString& who, const StormTrack& track, GeoPosition place, FileTime now) {
    const auto passing = track.passing(place);
    if (!passing) {
        return Text::tr("Moves away from %1").arg(who);
    }
    const FileTime left = passing->time - now;
    const QString at = clockText(passing->time);
    if (!passing->reaches) {
        const QString distance = CUnits::global().distanceText(passing->metres);
        return Text::tr("Passes %1 %2 from %3 at %4")
            .arg(distance, bearingText(passing->bearing), who, at);
    }
    const auto minutes = static_cast<double>(left) / static_cast<double>(kFileTimePerMinute);
    return left > 0 ? Text::tr("Reaches %1 at %2, in %3").arg(who, at, durationWords(minutes))
                    : Text::tr("Reached %1 at %2").arg(who, at);
}

} // namespace

void RadarReading::measureFrom(GeoPosition place) {
    end();
    m_use = Use::measuring;
    m_from = place;
}

void RadarReading::trackStorm() {
    end();
    m_use = Use::trackFirst;
}

bool RadarReading::end() {
    m_track.reset();
    m_to.reset();
    m_rests = false;
    m_wordsArea = {};
    return std::exchange(m_use, Use::none) != Use::none;
}

bool RadarReading::pointerMoved(QPoint place) {
    const bool shown = std::exchange(m_rests, false);
    m_pointer = place;
    return shown || (m_use == Use::measuring && !m_to);
}

bool RadarReading::pointerRested(QPoint place) {
    m_pointer = place;
    m_rests = true;
    return true;
}

bool RadarReading::pointerLeft() {
    const bool shown = std::exchange(m_rests, false);
    m_pointer.reset();
    return shown || m_use == Use::measuring;
}

bool RadarReading::tap(QPoint place, const RadarSight& sight) {
    if (m_wordsArea.contains(place)) {
        return end();
    }
    if (m_use == Use::none && m_scale.area().contains(place)) {
        ReadingSetting::showScale(!scaleWanted(sight));
        return true;
    }
    if (m_use == Use::none || !onImage(sight, place)) {
        return m_use != Use::none;
    }
    takePoint(sight.map.at(place), sight);
    return true;
}

bool RadarReading::takeMiddle(const RadarSight& sight) {
    const bool taken = m_use != Use::none && onImage(sight, sight.map.area.center());
    if (taken) {
        takePoint(sight.map.at(sight.map.area.center()), sight);
    }
    return taken;
}

void RadarReading::takePoint(GeoPosition place, const RadarSight& sight) {
    m_rests = false;
    switch (m_use) {
    case Use::none:
        break;
    case Use::measuring:
    case Use::tracked:
        m_to = place;
        break;
    case Use::trackFirst:
        if (sight.frameTime) {
            m_first = {place, *sight.frameTime};
            m_use = Use::trackLast;
        }
        break;
    case Use::trackLast:
        if (sight.frameTime) {
            m_track.emplace(m_first, StormTrack::Seen{place, *sight.frameTime});
            m_use = Use::tracked;
        }
        break;
    }
}

QStringList RadarReading::readout(const RadarSight& sight, QPoint place) {
    if (!onImage(sight, place)) {
        return {};
    }
    const auto product = sight.frame ? std::optional(sight.product) : std::nullopt;
    return readoutLines(
        {sight.map.at(place), sight.radar, sight.own, product, levelAt(sight, place)}
    );
}

// What was tapped stays; else the way goes where the pointer is, or to the middle.
GeoPosition RadarReading::wayEnd(const RadarSight& sight) const {
    const QPoint middle = sight.map.area.center();
    return m_to ? *m_to : sight.map.at(m_pointer.value_or(middle));
}

QStringList RadarReading::trackWords(const RadarSight& sight) const {
    if (m_track->standsStill()) {
        return {Text::tr("Stands still")};
    }
    QStringList lines{
        Text::tr("Moves %1 at %2")
            .arg(bearingText(m_track->bearing()), CUnits::global().speedText(m_track->knots()))};
    const std::pair<QString, const std::optional<GeoPosition>&> places[] = {
        {Text::tr("you"), sight.own},
        {Text::tr("target"), sight.target},
        {Text::tr("the point"), m_to}};
    for (const auto& [who, place] : places) {
        if (place) {
            lines += arrivalText(who, *m_track, *place, sight.now);
        }
    }
    return lines;
}

QStringList RadarReading::words(const RadarSight& sight) const {
    const QString close = QStringLiteral("  ") + kTimes;
    switch (m_use) {
    case Use::none:
        return {};
    case Use::measuring:
        return {Text::tr("Measuring") + close};
    case Use::trackFirst:
        return {
            touchText(
                sight, Text::marked("Touch the storm in the picture"),
                Text::marked("Touch the storm in the picture of %1")
            ) +
            close};
    case Use::trackLast:
        return {
            touchText(
                sight, Text::marked("Touch it again in the picture"),
                Text::marked("Touch it again in the picture of %1")
            ) +
            close};
    case Use::tracked:
        break;
    }
    QStringList lines = trackWords(sight);
    lines.front() += close;
    return lines;
}

bool RadarReading::wordsChanged(const RadarSight& sight) const {
    return words(sight) != m_wordsDrawn;
}

bool RadarReading::scaleWanted(const RadarSight& sight) {
    return ReadingSetting::scaleShown(sight.width);
}

void RadarReading::draw(QPainter& painter, const RadarSight& sight) {
    if (sight.placed) {
        const auto rings = ReadingSetting::rings();
        if (rings == ReadingSetting::kRingsRoundRadar) {
            drawRangeRings(painter, sight.map, sight.radar);
        } else if (rings == ReadingSetting::kRingsRoundPosition && sight.own) {
            drawRangeRings(painter, sight.map, *sight.own);
        }
        drawUse(painter, sight);
    }
    drawScale(painter, sight);
    drawWords(painter, sight);
    if (m_rests && m_pointer && m_use != Use::measuring) {
        const QStringList lines = readout(sight, *m_pointer);
        if (!lines.isEmpty()) {
            drawReadout(painter, sight.map.area, *m_pointer, lines);
        }
    }
}

void RadarReading::drawUse(QPainter& painter, const RadarSight& sight) const {
    painter.save();
    painter.setClipRect(sight.map.area, Qt::IntersectClip);
    if (m_use == Use::measuring) {
        drawMeasuredWay(painter, sight.map, {m_from, wayEnd(sight), sight.knots});
    } else if (m_use == Use::trackFirst || m_use == Use::trackLast) {
        if (m_use == Use::trackLast) {
            drawMapCross(painter, sight.map.onPage(m_first.place));
        }
        if (!m_pointer) {
            drawMapCross(painter, sight.map.area.center());
        }
    } else if (m_use == Use::tracked) {
        drawTrack(painter, sight);
    }
    painter.restore();
}

void RadarReading::drawTrack(QPainter& painter, const RadarSight& sight) const {
    const StormTrack::Seen& last = m_track->last();
    QPoint from = sight.map.onPage(m_first.place);
    drawMapCross(painter, from);
    const int steps = m_track->standsStill() ? 0 : kTrackSteps;
    const auto timeOf = [&last](int step) { return last.time + step * kTrackStep; };
    for (int step = 0; step <= steps; ++step) {
        const QPoint to = sight.map.onPage(m_track->placeAt(timeOf(step)));
        drawMapLine(painter, from, to);
        drawMapCross(painter, to);
        from = to;
    }
    const QPoint way = from - sight.map.onPage(m_first.place);
    QRect written;
    for (int step = 0; step <= steps; ++step) {
        const QPoint at = sight.map.onPage(m_track->placeAt(timeOf(step)));
        written = drawTimeBeside(painter, at, way, clockText(timeOf(step)), written);
    }
    if (m_to) {
        drawMapCross(painter, sight.map.onPage(*m_to));
    }
}

void RadarReading::drawScale(QPainter& painter, const RadarSight& sight) {
    const int row = painter.fontMetrics().height();
    const QRect room = sight.map.area.adjusted(0, 2 * row, 0, -3 * row);
    m_scale.hide();
    if (!sight.hasPicture || room.height() <= 0) {
        return;
    }
    if (scaleWanted(sight)) {
        const auto marked = m_rests && m_pointer ? levelAt(sight, *m_pointer) : std::nullopt;
        m_scale.draw(painter, room, sight.product, marked);
    } else {
        m_scale.drawBadge(painter, room, sight.product);
    }
}

void RadarReading::drawWords(QPainter& painter, const RadarSight& sight) {
    m_wordsDrawn = words(sight);
    m_wordsArea = {};
    if (m_wordsDrawn.isEmpty()) {
        return;
    }
    const int row = painter.fontMetrics().height();
    const QRect room = sight.map.area.adjusted(row, 2 * row, -row, -2 * row - row / 2);
    const QImage picture = textPicture(painter, m_wordsDrawn.join(u'\n'), room.width());
    QRect box(QPoint(), picture.size());
    box.moveCenter(room.center());
    box.moveBottom(room.bottom());
    painter.drawImage(box.topLeft(), picture);
    m_wordsArea = box.adjusted(-row / 2, -row / 2, row / 2, row / 2);
}

} // namespace raincast
