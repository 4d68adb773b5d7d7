// SPDX-License-Identifier: MIT
#pragma once

#include "app/local_server.h"
#include "net/connection.h"
#include "weather/servers_setting.h"

#include <QString>
#include <QStringList>

namespace raincast {

/// The servers that the viewer starts for itself, one for live radar and one for sample weather, so
/// that a newcomer sees weather without configuring anything. Each is started for the first
/// transfer that wants it, and ends when the settings want it no more. Other hosts are where their
/// names say.
class LocalServers : public ConnectionManager, public Listener<ServersChange> {
public:
    /// `liveArguments` go to the one for live radar as well.
    explicit LocalServers(
        QString program = LocalServer::installedProgram(), const QStringList& liveArguments = {}
    );

    void EstablishConnection(const QString& host, Ready ready) override;
    [[nodiscard]] QString addressOf(const QString& host) const override;
    void onPublished(ServersChange& change) override;

    [[nodiscard]] const LocalServer& live() const { return m_live; }
    [[nodiscard]] const LocalServer& sample() const { return m_sample; }

private:
    LocalServer m_live;
    LocalServer m_sample;
};

} // namespace raincast
