// SPDX-License-Identifier: MIT
#pragma once

#include "map/map_icon.h"
#include "map/overlay_object.h"
#include "position/published_position.h"

namespace raincast {

/// The position that a feed publishes through, and its picture on maps: an icon that changes with
/// every position that comes in, another one without a fix, and, when moving, a red arrow to where
/// the user will be in a number of minutes.
///
/// The picture is that of the position that was published last, whatever the feed has learnt since:
/// so icon, arrow and place, and the lines that listeners write, tell the same.
class COverlayGPSPosition : public PublishedPosition, public COverlayObject {
public:
    class CDlgSetup; ///< map/dlg_gps_vector.h
    class SettingsType;
    class Persistant;

    static constexpr float kUsualVectorScale = 5;

    /// The minutes of travel that the arrow shows, for all positions: finite, 0 or more. Kept in
    /// the settings as "vector_scale" of "COverlayGPSPosition".
    [[nodiscard]] static float vectorScale();
    /// Sets them; maps show it at once. Anything but a finite number of 0 or more changes nothing.
    static void setVectorScale(float minutes);

    /// Changes the icon, tells listeners, then the maps.
    void publish() override;
    void drawAsLost() override;

    /// The icon that is drawn now.
    [[nodiscard]] MapIcon icon() const { return published().valid() ? m_fixIconA : MapIcon::noFix; }

    /// The position and, when moving with a fix, the arrow's end. Nothing as long as no position is
    /// known, which is to say without a fix at latitude and longitude 0.
    void Layout(std::vector<ImagePixel>& outline, const GeoReference& geoReference) const override;
    void Draw(QPainter& painter, const ViewTransform& view, const std::vector<PagePoint>& outline)
        override;
    /// A mark that is passed does not hide the user, nor does the place where they were lost.
    [[nodiscard]] Layer layer() const override {
        return published().valid() ? Layer::position : Layer::lostPosition;
    }

private:
    /// Exchanged at every publication; the first one is drawn.
    MapIcon m_fixIconA = MapIcon::fixA;
    MapIcon m_fixIconB = MapIcon::fixB;
};

} // namespace raincast
