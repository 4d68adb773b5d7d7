// SPDX-License-Identifier: MIT
#include "reading/readout.h"

#include "core/text.h"
#include "geo/way.h"
#include "map/mark_names.h"
#include "reading/beam_height.h"
#include "reading/level_text.h"
#include "reading/text_picture.h"
#include "units/units.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

constexpr double kShortRangeMetres = 230'000;
constexpr double kFeetPerMetre = 3.281;
constexpr int kFromPointer = 12; // so that the pointer hides nothing

/// Whether a product is made of the lowest beam alone.
bool isOfLowestBeam(Product product) {
    return product == Product::baseReflectivity || product == Product::longRangeReflectivity ||
           product == Product::velocity || product == Product::stormRelativeVelocity;
}

// To the ten, as the nominal angle has no more to give.
QString heightText(double metres) {
    const bool metric = metricDistances();
    const double height = metric ? metres : metres * kFeetPerMetre;
    return Text::number(std::round(height / 10) * 10, 'f', 0) + u' ' +
           (metric ? Text::tr("m") : Text::tr("ft"));
}

} // namespace

double rangeMetres(Product product) {
    return rangeOf(product) == Range::longRange ? 2 * kShortRangeMetres : kShortRangeMetres;
}

QString wayText(GeoPosition from, GeoPosition to) {
    const LocalOffset back = shortWay(to, from);
    const float bearing =
        bearingBack(static_cast<float>(back.eastMetres), static_cast<float>(back.northMetres));
    return CUnits::global().distanceText(shortWay(from, to).lengthMetres()) + u' ' +
           bearingText(bearing);
}

QStringList readoutLines(const ReadPlace& place) {
    QStringList lines;
    const double distance = shortWay(place.radar, place.position).lengthMetres();
    if (place.product && place.level) {
        const bool outside = place.level == 0U && distance > rangeMetres(*place.product);
        lines += outside ? Text::tr("outside the radar's range")
                         : levelText(*place.product, *place.level);
    }
    lines += CUnits::global().formatPosition(place.position);
    lines += Text::tr("From radar %1").arg(wayText(place.radar, place.position));
    if (place.own) {
        lines += Text::tr("From you %1").arg(wayText(*place.own, place.position));
    }
    if (place.product && isOfLowestBeam(*place.product) &&
        distance <= rangeMetres(*place.product)) {
        lines += Text::tr("Beam %1 above radar")
                     .arg(heightText(beamHeight(distance, kLowestBeamElevation)));
    }
    return lines;
}

void drawReadout(QPainter& painter, const QRect& area, QPoint place, const QStringList& lines) {
    const QImage picture = textPicture(painter, lines.join(u'\n'), area.width());
    QRect box(place + QPoint(kFromPointer, kFromPointer), picture.size());
    if (box.right() > area.right()) {
        box.moveRight(place.x() - kFromPointer);
    }
    if (box.bottom() > area.bottom()) {
        box.moveBottom(place.y() - kFromPointer);
    }
    box.moveLeft(std::max(box.left(), area.left()));
    box.moveTop(std::max(box.top(), area.top()));
    const QRect seen = box & area;
    painter.drawImage(seen.topLeft(), picture, seen.translated(-box.topLeft()));
}

} // namespace raincast
