// SPDX-License-Identifier: MIT
#include "reading/measuring.h"

#include "core/text.h"
#include "geo/way.h"
#include "map/mark_names.h"
#include "reading/map_line.h"
#include "reading/map_sight.h"
#include "reading/readout.h"
#include "units/units.h"

#include <cmath>

namespace raincast {

namespace {

constexpr double kLeastKnots = 0.5; // below, a receiver at rest shows chance
constexpr double kMetresPerNauticalMile = 1852;
constexpr double kMostMinutes = 99 * 60;

} // namespace

QString durationText(double minutes) {
    if (!(minutes < kMostMinutes)) {
        return Text::tr("over 99 h");
    }
    const long whole = std::lround(minutes);
    return whole < 60
               ? Text::tr("%1 min").arg(whole)
               : Text::tr("%1 h %2 min").arg(whole / 60).arg(whole % 60, 2, 10, QLatin1Char('0'));
}

QString durationWords(double minutes) {
    if (!(minutes < kMostMinutes)) {
        return durationText(minutes);
    }
    const long whole = std::lround(minutes);
    return whole < 60 ? Text::counted("%n minutes", "%n minute", whole)
                      : Text::tr("%1 h %2 minutes")
                            .arg(whole / 60)
                            .arg(whole % 60, 2, 10, QLatin1Char('0'));
}

QStringList measuredLines(const MeasuredWay& way) {
    const LocalOffset there = shortWay(way.from, way.to);
    const float back =
        bearingBack(static_cast<float>(there.eastMetres), static_cast<float>(there.northMetres));
    QStringList lines{wayText(way.from, way.to) + QStringLiteral(" / ") + bearingText(back)};
    if (way.knots >= kLeastKnots) {
        const double miles = there.lengthMetres() / kMetresPerNauticalMile;
        lines +=
            Text::tr("%1 at %2")
                .arg(durationText(miles / way.knots * 60), CUnits::global().speedText(way.knots));
    }
    return lines;
}

void drawMeasuredWay(QPainter& painter, const MapSight& sight, const MeasuredWay& way) {
    const QPoint end = sight.onPage(way.to);
    drawMapLine(painter, sight.onPage(way.from), end);
    drawMapCross(painter, sight.onPage(way.from));
    drawMapCross(painter, end);
    drawReadout(painter, sight.area, end, measuredLines(way));
}

} // namespace raincast
