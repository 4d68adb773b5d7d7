// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"
#include "radar/catalogue/sites.h"

#include <QWidget>

#include <functional>
#include <optional>

namespace raincast {

/// All sites as dots where they lie between the states' borders, the chosen one with its name, and
/// the user's position. A tap chooses the nearest dot, the arrow keys one in their direction. Guam,
/// which lies far from the others, stands at the left edge.
class StationMap : public QWidget {
public:
    /// `chosen` is called when the user has chosen another site.
    StationMap(QWidget* parent, std::function<void(const RadarSite& site)> chosen);

    /// The site that stands out; null for none.
    void setCurrent(const RadarSite* site);
    /// The user's position; none for no sign of it.
    void setPosition(const std::optional<GeoPosition>& position);

    /// Where a position stands, in pixels.
    [[nodiscard]] QPointF placeOf(GeoPosition position) const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    [[nodiscard]] QRectF area() const;
    [[nodiscard]] QPointF projected(double latitude, double longitude) const;
    void drawStates(QPainter& painter) const;
    void choose(const RadarSite* site);
    void drawName(QPainter& painter, const RadarSite& site) const;

    std::function<void(const RadarSite&)> m_chosen;
    const RadarSite* m_current = nullptr;
    std::optional<GeoPosition> m_position;
};

} // namespace raincast
