// SPDX-License-Identifier: MIT
#pragma once

#include "core/listener.h"
#include "net/servers.h"
#include "replay/past_storms.h"

#include <QString>

namespace raincast {

/// Where weather comes from.
enum class WeatherSource {
    live,   ///< real weather, from a server that the viewer starts itself
    sample, ///< made-up weather, likewise
    past,   ///< a storm of the past, likewise
    another ///< the servers that the user has named
};

/// Another source, or another server: published when the user, or the program for want of live
/// radar, has changed it.
struct ServersChange {
    QString siteId{}; ///< what the user wants to see there; empty: what is shown now
    QString left{};   ///< a folder of the cache root that is wanted no more; empty: none
};

/// The source of weather that the user has chosen, as the settings keep it, and the servers that
/// pictures come from then.
///
/// Of "another" source, one host alone that is the default one stands for a server that the viewer
/// starts itself. Settings of earlier versions have hosts only: the default ones mean the default
/// source.
class ServersSetting {
public:
    class Persistant;

    /// The source of an installation that nobody has changed.
    [[nodiscard]] static WeatherSource defaultSource();

    /// The hosts of an installation that nobody has changed: where raincast-server listens unless
    /// it is told otherwise.
    [[nodiscard]] static QString defaultHost();

    /// The user's choice, and the hosts of "another" source, which are kept with other choices too.
    [[nodiscard]] static WeatherSource source();
    [[nodiscard]] static RadarServers hosts();
    /// Changes the settings and publishes that.
    static void choose(WeatherSource source, const RadarServers& hosts);
    static void choosePast(const PastStormChoice& choice);
    /// The past storm that was chosen last, if not now; of no site.
    [[nodiscard]] static const PastStormChoice& past();

    /// From now on all is as with settings that have nothing but these hosts.
    static void set(const RadarServers& hosts);
    /// Uses another server for this run only; empty texts change nothing.
    static void setForThisRun(const QString& radarServer, const QString& basemapServer);

    /// Whether live radar was ever seen here, as the settings keep it.
    [[nodiscard]] static bool hadLive();
    static void noteLive();

    /// Has sample weather stand in for live radar, or no longer, and publishes a change of that. A
    /// choice ends it.
    static void standIn(bool standsIn);
    [[nodiscard]] static bool standsIn();

    /// Where weather comes from at present: the user's choice, or what stands in for it.
    [[nodiscard]] static WeatherSource inUse();
    /// The folder of the cache root for its pictures; empty: the root itself.
    [[nodiscard]] static QString cacheBranch();
    /// The servers of that.
    [[nodiscard]] static RadarServers current();
};

} // namespace raincast
