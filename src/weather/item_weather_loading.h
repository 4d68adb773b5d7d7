// SPDX-License-Identifier: MIT
#pragma once

#include "radar/basemaps.h"
#include "radar/radar_view.h"
#include "weather/item_weather.h"

#include <QString>

namespace raincast {

struct FirstShow;

/// Loads a radar item's pictures into its state, and is the view that loads and updates report to:
/// the item is painted at each step, and the cursor shows that the user has to wait. Every call
/// that loads blocks until it is done; what goes wrong stands in the state's status text.
class CItemWeather::Loading : public RadarView {
public:
    /// The item is borrowed.
    explicit Loading(CItemWeather& item) : m_item(item) {}

    /// Shows what the program's start asks for; false, and nothing is done, when it asks for
    /// nothing that this item takes.
    [[nodiscard]] bool begin(const FirstShow& first);
    /// Shows the item's site, from the cache where that has its frames; does nothing while an image
    /// is in its place already.
    void resume();

    /// Changes to a site (LoadBasemaps); the result is that of the load.
    bool load(const QString& siteId, bool updateRadar);
    /// Updates the radar (RequestUpdate); false without a site.
    bool update();

    /// The map layers that were loaded last.
    [[nodiscard]] const Basemaps& basemaps() const { return m_basemaps; }

    /// How far a load is; 0 of 0 while none is under way.
    struct Progress {
        int done = 0;
        int wanted = 0;
    };
    [[nodiscard]] Progress progress() const { return m_progress; }

    void statusChanged(const QString& /*status*/) override {}
    void repaint() override;
    void progress(int done, int wanted) override;
    [[nodiscard]] ImagePixel centrePixel() const override;
    [[nodiscard]] GeoPosition centrePosition() const override;
    [[nodiscard]] GeoReference& geoReference() override;
    void geoReferenceChanged(GeoPosition centre) override;
    void showWaiting(bool waiting) override;
    void contentChanged() override;

private:
    [[nodiscard]] bool loadFrames();
    [[nodiscard]] bool wholeImageInView() const;
    [[nodiscard]] RadarScene scene();

    CItemWeather& m_item;
    Basemaps m_basemaps;
    Progress m_progress;
};

} // namespace raincast
