// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "geo/geo_position.h"
#include "radar/bitmap.h"
#include "radar/catalogue/product.h"
#include "reading/map_sight.h"
#include "reading/scale_bar.h"
#include "reading/storm_track.h"

#include <QPoint>
#include <QStringList>

#include <optional>

class QPainter;

namespace raincast {

/// A radar picture as it is shown at present, and what is known besides.
struct RadarSight {
    explicit RadarSight(const MapSight& shown) : map(shown) {}

    MapSight map;
    bool placed = false; ///< the picture has its place on the earth
    Product product = Product::baseReflectivity;
    DetailedBitmap frame;              ///< on the screen; null between rounds of a loop
    std::optional<FileTime> frameTime; ///< of that frame
    GeoPosition radar;                 ///< where the antenna stands
    std::optional<GeoPosition> own;    ///< the user's position
    double knots = 0;                  ///< of the user
    std::optional<GeoPosition> target; ///< the mark that the user is on the way to
    FileTime now = 0;
    bool hasPicture = false; ///< there are frames
    int width = 0;           ///< of the area, in pixels of 96 to an inch
};

/// How a user reads a radar picture: the scale, the readout where the pointer rests, range rings, a
/// way that is measured, and a storm that is tracked. It draws them and knows what is under way. A
/// call that changes what is seen returns true.
class RadarReading {
public:
    enum class Use {
        none,
        measuring,  ///< a tap is the way's end
        trackFirst, ///< a tap is the storm in the oldest frame
        trackLast,  ///< a tap is the storm in the newest frame
        tracked,    ///< a tap is a place that the storm may reach
    };
    [[nodiscard]] Use use() const { return m_use; }

    void measureFrom(GeoPosition place);
    void trackStorm();
    /// Ends measuring or tracking; false if neither is under way.
    bool end();

    /// Places are pixels of the page.
    bool pointerMoved(QPoint place);
    bool pointerRested(QPoint place);
    bool pointerLeft();
    /// A tap is taken while something is under way, and on the scale and what ends the use.
    bool tap(QPoint place, const RadarSight& sight);
    /// The middle of the area as a point, for those without a pointer.
    bool takeMiddle(const RadarSight& sight);

    /// Whether something is under way, or the readout stands where the pointer rests.
    [[nodiscard]] bool inUse() const { return m_use != Use::none || (m_rests && m_pointer); }
    /// What the readout says of a place; empty beside the picture.
    [[nodiscard]] static QStringList readout(const RadarSight& sight, QPoint place);

    void draw(QPainter& painter, const RadarSight& sight);
    /// What was said last of what is under way, in lines.
    [[nodiscard]] const QStringList& wordsDrawn() const { return m_wordsDrawn; }
    /// Whether it would be said otherwise now.
    [[nodiscard]] bool wordsChanged(const RadarSight& sight) const;

private:
    [[nodiscard]] QStringList words(const RadarSight& sight) const;
    [[nodiscard]] QStringList trackWords(const RadarSight& sight) const;
    [[nodiscard]] GeoPosition wayEnd(const RadarSight& sight) const;
    void drawScale(QPainter& painter, const RadarSight& sight);
    void drawWords(QPainter& painter, const RadarSight& sight);
    void drawUse(QPainter& painter, const RadarSight& sight) const;
    void drawTrack(QPainter& painter, const RadarSight& sight) const;
    [[nodiscard]] static bool scaleWanted(const RadarSight& sight);
    void takePoint(GeoPosition place, const RadarSight& sight);

    Use m_use = Use::none;
    GeoPosition m_from;                ///< that is measured from
    std::optional<GeoPosition> m_to;   ///< that was tapped last
    StormTrack::Seen m_first;          ///< of the storm
    std::optional<StormTrack> m_track; ///< while tracked
    std::optional<QPoint> m_pointer;   ///< over the picture
    bool m_rests = false;              ///< the pointer does
    ScaleBar m_scale;
    QRect m_wordsArea; ///< a tap on it ends the use
    QStringList m_wordsDrawn;
};

} // namespace raincast
