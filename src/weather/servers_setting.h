// SPDX-License-Identifier: MIT
#pragma once

#include "radar/servers.h"

#include <QString>

namespace raincast {

/// The servers that pictures come from, as the settings keep them. By default both are the server
/// that is installed with the viewer.
class ServersSetting {
public:
    class Persistant;

    /// Where the installed server listens.
    [[nodiscard]] static QString localServer();

    [[nodiscard]] static RadarServers current();
    /// Changes the settings.
    static void set(const RadarServers& servers);
    /// Uses another server for this run only; empty texts change nothing.
    static void setForThisRun(const QString& radarServer, const QString& basemapServer);
};

} // namespace raincast
