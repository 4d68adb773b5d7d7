// SPDX-License-Identifier: MIT
#include "reading/range_rings.h"

#include "core/text.h"
#include "geo/way.h"
#include "map/map_label.h"
#include "page/plain_target.h"
#include "reading/map_line.h"
#include "reading/map_sight.h"
#include "reading/ring_pixels.h"
#include "units/units.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

constexpr int kRingsWithin = 4;
constexpr int kMostRings = 12;

/// Half of the longer side of what is seen, in metres.
double reach(const MapSight& sight) {
    const QRect& area = sight.area;
    const QPoint middle = area.center();
    const GeoPosition here = sight.at(middle);
    const GeoPosition right = sight.at({area.right(), middle.y()});
    const GeoPosition top = sight.at({middle.x(), area.top()});
    return std::max(shortWay(here, right).lengthMetres(), shortWay(here, top).lengthMetres());
}

/// How many rings of a size lie between a place and the corner of an area that is farthest from it.
double farthest(const QRect& area, QPoint place, const QSizeF& ring) {
    const double across =
        std::max(std::abs(area.left() - place.x()), std::abs(area.right() - place.x()));
    const double down =
        std::max(std::abs(area.top() - place.y()), std::abs(area.bottom() - place.y()));
    return std::hypot(across / ring.width(), down / ring.height());
}

// The same size at every place of the view, whatever its reckoning leaves behind.
double rounded(double pixels) {
    constexpr double kSteps = 1024;
    return std::round(pixels * kSteps) / kSteps;
}

void drawRings(QPainter& painter, const QRect& area, QPoint place, const RingPixels::Rings& rings) {
    const double reach = rings.count * std::max(rings.width, rings.height);
    const QRect part = area & painter.clipBoundingRect().toAlignedRect();
    QImage* const target = plainTarget(painter, part);
    if (target != nullptr && reach <= RingPixels::kMostReach) {
        RingPixels::kept(rings).draw(*target, part, place);
        return;
    }
    for (int ring = 1; ring <= rings.count; ++ring) {
        drawMapEllipse(painter, place, ring * rings.width, ring * rings.height);
    }
}

/// A round distance: "50 Mi".
QString ringText(double metres) {
    const CUnits& units = CUnits::global();
    return Text::number(units.distanceOf(metres), 'g', 5) + u' ' + units.distanceUnit();
}

} // namespace

double ringStep(double metres) {
    const double wanted = CUnits::global().distanceOf(metres) / kRingsWithin;
    if (!(wanted > 0) || !std::isfinite(wanted)) {
        return 0;
    }
    const double power = std::pow(10.0, std::floor(std::log10(wanted)));
    double step = power;
    for (const double factor : {2.0, 5.0, 10.0}) {
        step = factor * power <= wanted * 1.2 ? factor * power : step;
    }
    return step * metres / (wanted * kRingsWithin);
}

void drawRangeRings(QPainter& painter, const MapSight& sight, GeoPosition middle) {
    const double step = ringStep(reach(sight));
    const LocalFrame frame(middle);
    if (step <= 0 || frame.metresPerDegreeLon() <= 0) {
        return;
    }
    const ImagePoint centre = sight.reference.geoToPixel(middle);
    const ImagePoint east = sight.reference.geoToPixel(frame.fromMetres({step, 0}));
    const ImagePoint north = sight.reference.geoToPixel(frame.fromMetres({0, step}));
    const double scale = std::ldexp(1.0, -sight.view.zoom());
    const double width = std::hypot(east.column - centre.column, east.row - centre.row) * scale;
    const double height = std::hypot(north.column - centre.column, north.row - centre.row) * scale;
    constexpr double kMostPixels = 20'000;
    if (!(width >= 1 && height >= 1 && width < kMostPixels && height < kMostPixels)) {
        return;
    }
    painter.save();
    painter.setClipRect(sight.area, Qt::IntersectClip);
    const QPoint place = sight.onPage(middle);
    const int half = painter.fontMetrics().height() / 2;
    const QSizeF size(width, height);
    const int last = std::min<int>(kMostRings, static_cast<int>(farthest(sight.area, place, size)));
    drawRings(painter, sight.area, place, {rounded(width), rounded(height), last});
    for (int ring = 1; ring <= last; ++ring) {
        const QPoint top = place - QPoint(0, static_cast<int>(std::lround(ring * height)));
        if (sight.area.adjusted(0, half, 0, 0).contains(top)) {
            drawMapLabel(painter, top, ringText(ring * step));
        }
    }
    painter.restore();
}

} // namespace raincast
