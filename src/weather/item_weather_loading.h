// SPDX-License-Identifier: MIT
#pragma once

#include "basemap/basemaps.h"
#include "basemap/radar_view.h"
#include "core/background.h"
#include "core/retry_wait.h"
#include "net/downloads.h"
#include "stations/site_change_line.h"
#include "weather/item_weather.h"
#include "weather/servers_setting.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace raincast {

struct CachedRadar;
struct FirstShow;

/// Loads a radar item's pictures into its state in the background, one action of the user at a
/// time, and is the view that loads and updates report to: the item is painted at each step. What
/// goes wrong stands in the state's status text.
class CItemWeather::Loading : public RadarView, public Listener<ServersChange> {
public:
    /// The item is borrowed.
    explicit Loading(CItemWeather& item);
    ~Loading() override;
    Loading(const Loading&) = delete;
    Loading& operator=(const Loading&) = delete;

    /// What fetches, borrowed; until then the item fetches for itself.
    void use(Downloads& downloads) { m_downloads = &downloads; }

    /// Shows what the program's start asks for; false, and nothing is done, when it asks for
    /// nothing that this item takes.
    [[nodiscard]] bool begin(const FirstShow& first);
    /// Shows the item's site, from the cache where that has its frames; does nothing while an image
    /// is in its place already, unless the page went while something was loaded.
    void resume();
    /// The item's page has a window. When that goes, what was begun in it is cancelled, and made up
    /// for when the page comes back.
    void watch(QWidget& window);

    /// Changes to a site (LoadBasemaps); what runs is cancelled.
    void load(const QString& siteId, bool updateRadar);
    /// The same with the layers alone, and then an update.
    void loadThenUpdate(const QString& siteId);
    /// Updates the radar (RequestUpdate); what runs is cancelled. Does nothing without a site.
    void update();
    /// The same because an update was due at this time; does nothing while something runs, and for
    /// a while after a failure.
    void updateDueAt(FileTime now);
    /// Loads all anew if there are other servers now, at once or when it is shown next.
    void onPublished(ServersChange& change) override;
    /// Cancels what runs, as the user wishes.
    void stop();

    [[nodiscard]] bool running() const;
    /// The same, but for frames of a loop whose first one is shown already.
    [[nodiscard]] bool pictureComing() const;

    /// Loads what a first picture did not wait for, if that is shown and nothing else runs. To be
    /// called when the item was drawn, and from time to time: nobody may look.
    void loadOthers();

    /// While the cache is on its way to another place nothing is loaded, and what runs is
    /// cancelled.
    void hold(bool held);
    [[nodiscard]] bool held() const { return m_held; }

    /// What the item loads with, of the present servers.
    [[nodiscard]] RadarScene scene();

    /// The same without another look for which servers those are.
    [[nodiscard]] RadarScene presentScene();

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
    void windowGone();
    void saySiteChange();
    [[nodiscard]] bool busy() const { return m_resuming || m_action != nullptr; }
    void loadFirst();
    void loadCached(std::function<void(bool complete)> done);
    void take(const CachedRadar& cached);
    void say(const QString& status);
    void ended(bool well);
    void cancel();
    void settleDue();
    [[nodiscard]] bool onScreen() const;
    [[nodiscard]] bool wholeImageInView() const;
    [[nodiscard]] Downloads& downloads();
    void followSource();

    CItemWeather& m_item;
    Basemaps m_basemaps;
    Progress m_progress;
    Downloads* m_downloads = nullptr;
    std::unique_ptr<Downloads> m_ownDownloads;
    bool m_held = false;
    RadarServers m_servers;  ///< that were used last
    bool m_forRadar = false; ///< the present action brings radar images, not layers alone
    bool m_outdated = false; ///< layers and frames are those of other servers
    QMetaObject::Connection m_windowGone;
    bool m_inWindow = false; ///< what runs was begun while the page had its window
    bool m_interrupted = false;
    QString m_siteBefore; ///< of an update that runs
    SiteChangeLine m_siteChange;
    bool m_updateNext = false; ///< when the present action has ended
    RetryWait m_retry;
    std::optional<FileTime> m_dueAt; ///< of the automatic update that runs
    std::optional<Background> m_resuming;
    std::unique_ptr<RadarAction> m_action;
};

} // namespace raincast
