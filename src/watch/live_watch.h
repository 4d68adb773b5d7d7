// SPDX-License-Identifier: MIT
#pragma once

#include "core/timers.h"
#include "net/downloads.h"
#include "weather/servers_setting.h"

#include <QString>

#include <functional>
#include <memory>

namespace raincast {

/// Lets sample weather stand in where live radar is wanted, was never seen and cannot be reached,
/// so that a newcomer without a network sees how weather looks, and takes it away again as soon as
/// a provider can be reached. Once live radar was seen it does nothing: then its last frames stay
/// on the screen with their age.
///
/// It asks the viewer's own server for live radar, if that runs, first after five seconds. While
/// sample weather stands in it asks every 30 seconds, for the listing of what the user looks at,
/// too: that makes the server try its providers again.
class LiveWatch : public Listener<ServersChange> {
public:
    /// Where the listing is that the user looks at; empty for none.
    using Listing = std::function<QString()>;

    /// Told when sample weather begins to stand in, and when it no longer does.
    using Told = std::function<void(bool standsIn)>;

    /// The downloads are borrowed.
    LiveWatch(Downloads& downloads, Timers& timers, Listing listing, Told told);
    LiveWatch(const LiveWatch&) = delete;
    LiveWatch& operator=(const LiveWatch&) = delete;

    /// Begins; the settings are loaded.
    void begin();
    /// Asks now.
    void ask();

    /// Whether it is still to be seen if sample weather has to stand in for what the user looks at.
    [[nodiscard]] bool undecided() const;

    void onPublished(ServersChange& change) override;

private:
    [[nodiscard]] static bool isWanted();
    void askServer();
    void get(const QString& path, Downloads::Done done);
    void take(const HttpResponse& status);
    void rest();

    Downloads& m_downloads;
    Listing m_listing;
    Told m_told;
    std::unique_ptr<Alarm> m_alarm;
    std::unique_ptr<Downloads::Download> m_download;
    bool m_begun = false;
    bool m_decided = false;
    int m_inVain = 0; ///< times that the server was not there to be asked, or could not say
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true); ///< for a late connection
};

} // namespace raincast
