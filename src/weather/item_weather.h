// SPDX-License-Identifier: MIT
#pragma once

#include "along/item_along.h"
#include "basemap/basemaps.h"
#include "core/clock.h"
#include "core/heartbeat.h"
#include "drawing/layer_stack.h"
#include "map/item_map_view.h"
#include "page/taps.h"
#include "persist/type_ids.h"
#include "pictures/item_pictures.h"
#include "player/item_player.h"
#include "radar/radar_state.h"
#include "sharp/sharp_pictures.h"
#include "warnings/item_warnings.h"
#include "weather/first_show.h"

#include <memory>
#include <utility>

namespace raincast {

class CDlgAnimation;
class CDlgLayers;
class CDlgStation;
class CDlgStorage;
class Downloads;
struct ImageAge;
struct PictureTexts;

/// The radar item: a site's radar images over and under map layers, placed on the earth so that the
/// map view's overlays fall where they belong. On request it is animated and updates itself.
///
/// It loads in the background, one load at a time, and is painted at each step, with a bar that
/// shows how far it is. What goes wrong stands in the item as a text until the next load; the
/// picture of before stays, with its age. After a start, or for another site, while the server
/// cannot be reached, it shows the newest frames in the cache. Another site, product or page, and
/// the item's end, cancel what runs. When the servers change it loads all anew, at once or when it
/// is shown next; nothing of another source's weather is shown or used.
class CItemWeather : public CItemMapView, public CHeartbeat::Counter {
public:
    using CDlgAnimation = raincast::CDlgAnimation;
    using CDlgLayers = raincast::CDlgLayers;
    using CDlgStation = raincast::CDlgStation;
    using CDlgStorage = raincast::CDlgStorage;

    static const SerializableType<CItemWeather> cType;

    /// The number of the item's menu.
    static constexpr int kMenu = 108;
    /// The middle of a radar image, where the radar stands.
    static constexpr ImagePixel kImageCentre{300, 275};

    CItemWeather();
    ~CItemWeather() override;

    [[nodiscard]] bool Read(CSerialReader& reader) override;
    [[nodiscard]] bool Write(CSerialWriter& writer) const override;
    [[nodiscard]] std::uint32_t GetTypeId() const override { return kTypeItemWeather; }

    void draw(QPainter& painter) override;
    [[nodiscard]] QRect opaqueArea() const override;
    /// Loads what the item shows, unless it is there. An item without a site asks for one.
    void windowCreated() override;
    bool command(int id, int notification) override;
    /// "1" to "7" show a product, in the order of their table; those of the loop (kLoopRows).
    bool character(char16_t unit) override;
    /// Esc ends measuring and tracking; Return takes the place in the middle for them.
    bool keyDown(int key) override;
    bool stylusDown(int x, int y, Qt::KeyboardModifiers keys) override;
    /// A single tap that reads nothing lists the warnings there; where there are none it shows or
    /// hides the bar of the loop.
    void stylusUp(int x, int y) override;
    void stylusLost() override;
    bool doublePress(int x, int y) override;
    void pointerMoved(int x, int y) override;
    void pointerRested(int x, int y) override;
    void pointerLeft() override;
    std::span<const MenuRow> contextMenu(int x, int y) override;
    /// What the picture says of the place.
    [[nodiscard]] QString contextHeading(int x, int y) const override;
    void menuPopUp(QMenu& menu) override;
    /// What goes wrong, or what is being loaded.
    [[nodiscard]] QString statusText() const override { return m_state.status; }
    /// The text over the picture: the status, the cause of a failure, and which warnings are too
    /// old to be shown.
    [[nodiscard]] QString overPicture() const;
    [[nodiscard]] QString caption() const override;

    /// Every half second: makes an automatic update that is due, or a step of the animation, and
    /// follows the picture's age.
    void Tick() override;

    [[nodiscard]] const RadarState& state() const { return m_state; }
    [[nodiscard]] const BasemapLayers& layers() const { return m_layers; }

    /// Sets what the item begins with when it is shown next. It does so once.
    void beginWith(FirstShow first) { m_first = std::move(first); }
    /// What fetches for the item, borrowed for its life. Without it the item fetches for itself.
    void useDownloads(Downloads& downloads);

    /// Who watches over the user, borrowed likewise.
    void useWarnings(WarningWatch& watch) { m_warnings.use(watch); }

    [[nodiscard]] ItemPictures& pictures() { return m_pictures; }

    /// Whether something is being loaded, or updated.
    [[nodiscard]] bool loading() const;
    /// The same, but for frames of a loop whose first one is shown already.
    [[nodiscard]] bool pictureComing() const;
    /// Whether what is on the screen may soon be there with more pixels.
    [[nodiscard]] bool sharpComing() const { return m_sharp.coming(); }
    /// The same of any frame of the loop.
    [[nodiscard]] bool sharpLoopComing() const { return m_sharp.loopComing(); }

protected:
    [[nodiscard]] QSize imageSize() const override {
        return {m_state.imageWidth, m_state.imageHeight};
    }
    [[nodiscard]] int coveredBelow() const override { return m_player.coveredHeight(); }
    [[nodiscard]] bool readsPosition() const override;

private:
    class Loading;
    class Dialogs;
    class Reading;

    /// The site and product that are shown, and the date of the frame.
    [[nodiscard]] QString about() const;
    void placeImage(GeoPosition centreBefore);
    void tapped(QPoint place);
    void showProduct(int product);
    [[nodiscard]] PictureTexts texts() const;
    [[nodiscard]] const RadarFrame* shownFrame() const;
    [[nodiscard]] ImageAge age() const;
    [[nodiscard]] QString productText() const;
    [[nodiscard]] QPoint onPage(int x, int y) const {
        return rectangle().toRect().topLeft() + QPoint(x, y);
    }
    [[nodiscard]] QString pictureName() const;
    [[nodiscard]] double pixelRatio() const;
    [[nodiscard]] int wantedDetail() const;
    [[nodiscard]] LayerStack::Layers layersToDraw();
    [[nodiscard]] DetailedBitmap shownEchoes();
    [[nodiscard]] bool wordsChanged() const;
    void followSharp();

    RadarState m_state;
    BasemapLayers m_layers;
    FirstShow m_first; ///< until the item is shown
    LayerStack m_stack;
    std::unique_ptr<Loading> m_loading;
    std::unique_ptr<Reading> m_reading;
    SharpPictures m_sharp; ///< may fetch with the loading's downloads
    Taps m_taps;
    ItemPlayer m_player;
    ItemPictures m_pictures;
    ItemAlong m_along;
    ItemWarnings m_warnings{*this, m_state};
    bool m_viewStored = false; ///< the view was chosen or read: a first load leaves it alone
    QString m_ageShown;        ///< what the picture said of its age when it was painted last
    QString m_replayShown{};   ///< the same of a replay
    Clock::Teller m_tellerShown = Clock::Teller::system; ///< the same of the clock
};

} // namespace raincast
