// SPDX-License-Identifier: MIT
#pragma once

#include "core/heartbeat.h"
#include "map/item_map_view.h"
#include "persist/type_ids.h"
#include "radar/basemaps.h"
#include "radar/radar_state.h"
#include "weather/layer_stack.h"

#include <memory>
#include <optional>

namespace raincast {

class CDlgAnimation;
class CDlgLayers;
class CDlgStation;
class CDlgStorage;
struct PictureTexts;

/// The radar item: a site's radar images over and under map layers, placed on the earth so that the
/// map view's overlays fall where they belong; animated and updated by itself when asked.
///
/// Loading blocks; while it does, the item is painted at each step, with a bar that shows how far
/// it is. What goes wrong stands in the item as a text until the next load.
class CItemWeather : public CItemMapView, public CHeartbeat::Counter {
public:
    using CDlgAnimation = raincast::CDlgAnimation;
    using CDlgLayers = raincast::CDlgLayers;
    using CDlgStation = raincast::CDlgStation;
    using CDlgStorage = raincast::CDlgStorage;

    static const SerializableType<CItemWeather> cType;

    /// The number of the item's menu.
    static constexpr int kMenu = 108;

    CItemWeather();
    ~CItemWeather() override;

    [[nodiscard]] bool Read(CSerialReader& reader) override;
    [[nodiscard]] bool Write(CSerialWriter& writer) const override;
    [[nodiscard]] std::uint32_t GetTypeId() const override { return kTypeItemWeather; }

    void draw(QPainter& painter) override;
    [[nodiscard]] QRect opaqueArea() const override;
    /// Loads what is to be shown unless it is there; an item without a site asks for one.
    void windowCreated() override;
    bool command(int id, int notification) override;
    /// Only what could not be loaded is wrong; what is being loaded is not.
    [[nodiscard]] QString statusText() const override { return m_state.status; }
    [[nodiscard]] QString caption() const override;

    /// Every half second: an automatic update that is due, or a step of the animation. The
    /// picture's age is looked at, too.
    void Tick() override;

    [[nodiscard]] const RadarState& state() const { return m_state; }
    [[nodiscard]] const BasemapLayers& layers() const { return m_layers; }

    /// Gives a site to the radar item that is shown next, as if it was chosen in the station
    /// dialog, and a product of 0 to 6; with none the item keeps its own.
    static void chooseForFirst(const QString& siteId, std::optional<int> product);

    /// Shows a site, animated, in the radar item that is shown next if that has no site yet; nobody
    /// is asked for one. Both are as if they were chosen in the item's dialogs.
    static void welcome(const QString& siteId);

private:
    class View;

    void show();
    void loadFrames(bool& needRadar);
    bool loadBasemaps(const QString& siteId, bool updateRadar);
    bool requestUpdate();
    [[nodiscard]] bool wholeImageInView() const;
    void placeImage(GeoPosition centreBefore);

    void chooseStation(GeoPosition position);
    void editAnimation();
    void editLayers();
    void editStorage();
    void followCache(const QString& folder);

    void readFrames(class CRecordReader& record, std::int32_t count);
    [[nodiscard]] PictureTexts texts() const;
    [[nodiscard]] const RadarFrame* shownFrame() const;
    [[nodiscard]] QString ageText() const;
    [[nodiscard]] QString productText() const;

    RadarState m_state;
    BasemapLayers m_layers;
    Basemaps m_basemaps;
    LayerStack m_stack;
    std::unique_ptr<View> m_viewOfLoads;
    bool m_viewStored = false; ///< the view was chosen or read: a first load leaves it alone
    QString m_ageShown;        ///< what the picture said of its age when it was painted last
    int m_progressDone = 0;
    int m_progressWanted = 0; ///< 0: nothing is being loaded
};

} // namespace raincast
