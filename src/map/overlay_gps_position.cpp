// SPDX-License-Identifier: MIT
#include "map/overlay_gps_position.h"

#include "core/user_change.h"
#include "geo/geo_reference.h"
#include "geo/local_frame.h"
#include "persist/persistant_data.h"
#include "window/screen_metrics.h"

#include <QImage>
#include <QPainter>

#include <cmath>
#include <utility>

namespace raincast {

namespace {

constexpr float kLeastSpeedKnots = 0.2F;
constexpr float kMetresPerMinuteAtOneKnot = 30.866667F;
constexpr float kArrowheadPixels = 5;
constexpr int kLargeIconWidth = 64;
constexpr QColor kArrowRed(255, 0, 0);

float minutesShown = COverlayGPSPosition::kUsualVectorScale;

bool isScale(float minutes) {
    return std::isfinite(minutes) && minutes >= 0;
}

bool largeIcons() {
    return ScreenMetrics::current().iconWidth() >= kLargeIconWidth;
}

GeoPosition endOfTravel(const CDataGPSPosition& position) {
    const float metres = position.speed * minutesShown * kMetresPerMinuteAtOneKnot;
    const LocalFrame frame({position.latitude, position.longitude});
    return frame.fromMetres(LocalFrame::alongBearing(position.course, metres));
}

// A shaft and two barbs that lean back by 45 degrees, all in whole pixels. Either end may be as far
// away as 32 bits reach.
void drawArrow(QPainter& painter, const QPointF& from, const QPointF& tip) {
    const auto dx = static_cast<float>(tip.x() - from.x());
    const auto dy = static_cast<float>(tip.y() - from.y());
    const float length = std::sqrt(dx * dx + dy * dy);
    if (length == 0) {
        return;
    }
    const float k = kArrowheadPixels / length;
    const QPointF head[] = {
        tip + QPointF(-std::trunc((dy + dx) * k), std::trunc((dx - dy) * k)), tip,
        tip + QPointF(std::trunc((dy - dx) * k), -std::trunc((dy + dx) * k))};
    painter.drawLine(from, tip);
    painter.drawPolyline(head, 3);
}

} // namespace

class COverlayGPSPosition::Persistant : public PersistantData {
public:
    Persistant() : PersistantData("COverlayGPSPosition") {}

private:
    // A file may hold any number.
    void exchange(SettingsExchange& values) override {
        float minutes = minutesShown;
        values.binary("vector_scale", minutes);
        minutesShown = isScale(minutes) ? minutes : kUsualVectorScale;
    }

    static Persistant s_record;
};

COverlayGPSPosition::Persistant COverlayGPSPosition::Persistant::s_record;

float COverlayGPSPosition::vectorScale() {
    return minutesShown;
}

void COverlayGPSPosition::setVectorScale(float minutes) {
    if (!isScale(minutes)) {
        return;
    }
    minutesShown = minutes;
    UserChange::announce();
    const std::vector<COverlayObject*> objects = all();
    for (COverlayObject* object : objects) {
        if (auto* const position = dynamic_cast<COverlayGPSPosition*>(object)) {
            position->announceChanged();
        }
    }
}

void COverlayGPSPosition::publish() {
    std::swap(m_fixIconA, m_fixIconB);
    PublishedPosition::publish();
    announceChanged();
}

void COverlayGPSPosition::drawAsLost() {
    PublishedPosition::drawAsLost();
    announceChanged();
}

void COverlayGPSPosition::Layout(std::vector<ImagePixel>& outline, const GeoReference& geoReference)
    const {
    outline.clear();
    const CDataGPSPosition& position = published();
    const bool known = position.valid() || position.latitude != 0 || position.longitude != 0;
    const auto here = geoReference.geoToPixelForDrawing({position.latitude, position.longitude});
    if (!known || !here.ok) {
        return;
    }
    outline.reserve(2);
    outline.push_back(here.pixel);
    if (position.valid() && position.speed > kLeastSpeedKnots) {
        const auto there = geoReference.geoToPixelForDrawing(endOfTravel(position));
        if (there.ok) {
            outline.push_back(there.pixel);
        }
    }
}

void COverlayGPSPosition::Draw(
    QPainter& painter, const ViewTransform& /*view*/, const std::vector<PagePoint>& outline
) {
    if (outline.empty()) {
        return;
    }
    const bool large = largeIcons();
    const int half = positionPictureExtent(large) / 2;
    const QPointF here(outline[0].x, outline[0].y);
    painter.drawImage(here - QPointF(half, half), mapIconPicture(icon(), large));
    if (outline.size() > 1) {
        painter.save();
        painter.setPen(QPen(kArrowRed, large ? 3 : 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        drawArrow(painter, here, QPointF(outline[1].x, outline[1].y));
        painter.restore();
    }
}

} // namespace raincast
