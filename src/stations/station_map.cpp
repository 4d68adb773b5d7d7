// SPDX-License-Identifier: MIT
#include "stations/station_map.h"

#include "core/text.h"
#include "stations/state_outlines.h"

#include <QKeyEvent>
#include <QLineF>
#include <QMouseEvent>
#include <QPainter>
#include <QPolygonF>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace raincast {

namespace {

// The sites but Guam lie within these.
constexpr double kWest = -168;
constexpr double kEast = -64;
constexpr double kSouth = 16;
constexpr double kNorth = 69;
// A degree of longitude is that much shorter in the middle of it.
constexpr double kShortening = 0.77;
constexpr double kDot = 2.5;
constexpr double kMargin = 6;
const QColor kLand(0xE4, 0xEC, 0xE4);
const QColor kGrid(0xD4, 0xDE, 0xD4);
const QColor kBorder(0x90, 0xA0, 0x90);
const QColor kInk(0x20, 0x30, 0x40);
const QColor kChosen(0xC0, 0x20, 0x20);
const QColor kOwn(0x10, 0x50, 0xD0);

GeoPosition positionOf(const RadarSite& site) {
    return {site.latitude, site.longitude};
}

QPointF directionOf(int key) {
    switch (key) {
    case Qt::Key_Left:
        return {-1, 0};
    case Qt::Key_Right:
        return {1, 0};
    case Qt::Key_Up:
        return {0, -1};
    case Qt::Key_Down:
        return {0, 1};
    default:
        return {};
    }
}

} // namespace

StationMap::StationMap(QWidget* parent, std::function<void(const RadarSite&)> chosen)
    : QWidget(parent), m_chosen(std::move(chosen)) {
    setObjectName(QStringLiteral("stationMap"));
    setAccessibleName(Text::tr("Map of the stations"));
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::CrossCursor);
}

void StationMap::setCurrent(const RadarSite* site) {
    m_current = site;
    setAccessibleDescription(site != nullptr ? site->nameText().toString() : QString());
    update();
}

void StationMap::setPosition(const std::optional<GeoPosition>& position) {
    m_position = position;
    update();
}

QRectF StationMap::area() const {
    const double wide = (kEast - kWest) * kShortening;
    const double high = kNorth - kSouth;
    const QRectF room = QRectF(rect()).adjusted(kMargin, kMargin, -kMargin, -kMargin);
    const double scale = std::min(room.width() / wide, room.height() / high);
    QRectF area(0, 0, std::max(wide * scale, 1.0), std::max(high * scale, 1.0));
    area.moveCenter(room.center());
    return area;
}

QPointF StationMap::projected(double latitude, double longitude) const {
    const QRectF on = area();
    const double across = (longitude - kWest) / (kEast - kWest);
    const double down = (kNorth - latitude) / (kNorth - kSouth);
    return {on.left() + across * on.width(), on.top() + down * on.height()};
}

QPointF StationMap::placeOf(GeoPosition position) const {
    const double longitude = position.longitude > 0 ? kWest : position.longitude;
    return projected(
        std::clamp(position.latitude, kSouth, kNorth), std::clamp(longitude, kWest, kEast)
    );
}

// What lies beyond the map's edges is cut by the widget's.
void StationMap::drawStates(QPainter& painter) const {
    constexpr double kHundredths = 100;
    painter.setPen(QPen(kBorder, 1));
    for (const auto& line : stateOutlines()) {
        QPolygonF places;
        for (const OutlinePoint& point : line) {
            places << projected(point.latitude / kHundredths, point.longitude / kHundredths);
        }
        painter.drawPolyline(places);
    }
}

void StationMap::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), kLand);
    painter.setPen(QPen(kGrid, 1));
    for (double longitude = -160; longitude < kEast; longitude += 20) {
        painter.drawLine(placeOf({kSouth, longitude}), placeOf({kNorth, longitude}));
    }
    for (double latitude = 20; latitude < kNorth; latitude += 10) {
        painter.drawLine(placeOf({latitude, kWest}), placeOf({latitude, kEast}));
    }
    drawStates(painter);
    painter.setPen(Qt::NoPen);
    painter.setBrush(kInk);
    for (const RadarSite& site : radarSites()) {
        painter.drawEllipse(placeOf(positionOf(site)), kDot, kDot);
    }
    if (m_position) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(kOwn, 2));
        painter.drawEllipse(placeOf(*m_position), 3 * kDot, 3 * kDot);
    }
    if (m_current != nullptr) {
        drawName(painter, *m_current);
    }
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
}

void StationMap::drawName(QPainter& painter, const RadarSite& site) const {
    const QPointF place = placeOf(positionOf(site));
    painter.setPen(Qt::NoPen);
    painter.setBrush(kChosen);
    painter.drawEllipse(place, 2 * kDot, 2 * kDot);
    const QString text = QStringLiteral("%1 %2").arg(site.idText(), site.nameText());
    const QFontMetrics metrics = fontMetrics();
    const QString fitting = metrics.elidedText(text, Qt::ElideRight, width() - 8);
    QRect box(0, 0, metrics.horizontalAdvance(fitting) + 6, metrics.height() + 2);
    const bool above = place.y() - 3 * kDot - box.height() > 0;
    box.moveCenter(place.toPoint());
    box.moveTop(static_cast<int>(above ? place.y() - 3 * kDot - box.height() : place.y() + 3 * kDot)
    );
    box.moveLeft(std::clamp(box.left(), 0, std::max(width() - box.width(), 0)));
    painter.setBrush(Qt::white);
    painter.drawRect(box);
    painter.setPen(kInk);
    painter.drawText(box, Qt::AlignCenter, fitting);
}

void StationMap::choose(const RadarSite* site) {
    if (site != nullptr && site != m_current) {
        setCurrent(site);
        m_chosen(*site);
    }
}

void StationMap::mousePressEvent(QMouseEvent* event) {
    const auto& sites = radarSites();
    const auto distance = [&](const RadarSite& site) {
        return QLineF(placeOf(positionOf(site)), event->position()).length();
    };
    choose(&*std::min_element(sites.begin(), sites.end(), [&](const auto& a, const auto& b) {
        return distance(a) < distance(b);
    }));
}

// The nearest dot that lies rather in the key's direction than beside it.
void StationMap::keyPressEvent(QKeyEvent* event) {
    const QPointF direction = directionOf(event->key());
    if (direction.isNull()) {
        QWidget::keyPressEvent(event);
        return;
    }
    const QPointF from = m_current != nullptr ? placeOf(positionOf(*m_current)) : area().center();
    const RadarSite* best = nullptr;
    double least = std::numeric_limits<double>::max();
    for (const RadarSite& site : radarSites()) {
        const QPointF way = placeOf(positionOf(site)) - from;
        const double along = QPointF::dotProduct(way, direction);
        const double aside = std::abs(way.x() * direction.y() - way.y() * direction.x());
        if (along > 0.01 && aside <= along && along + 2 * aside < least) {
            least = along + 2 * aside;
            best = &site;
        }
    }
    choose(best);
}

} // namespace raincast
