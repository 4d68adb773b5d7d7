// SPDX-License-Identifier: MIT
#pragma once

#include "app/local_server.h"
#include "net/connection.h"
#include "weather/servers_setting.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace raincast {

/// The servers that the viewer starts for itself, one for live radar, one for sample weather and
/// one for a storm of the past, so that a newcomer sees weather without configuring anything. Each
/// is started for the first transfer that wants it, and ends when the settings want it no more.
/// Other hosts are where their names say.
class LocalServers : public ConnectionManager, public Listener<ServersChange> {
public:
    /// `liveArguments` go to those for real weather as well.
    explicit LocalServers(
        QString program = LocalServer::installedProgram(), const QStringList& liveArguments = {}
    );

    void EstablishConnection(const QString& host, Ready ready) override;
    [[nodiscard]] QString addressOf(const QString& host) const override;
    void onPublished(ServersChange& change) override;

    [[nodiscard]] const LocalServer& live() const { return m_live; }
    [[nodiscard]] const LocalServer& sample() const { return m_sample; }

private:
    /// The server that a host stands for; null for a host of another, and for a storm of the past
    /// without a server.
    template<class Self>
    [[nodiscard]] static auto standsFor(Self& self, const QString& host) -> decltype(&self.m_live);
    void makeForReplay(const QString& host);

    QString m_program;
    QStringList m_liveArguments;
    LocalServer m_live;
    LocalServer m_sample;
    std::unique_ptr<LocalServer> m_replay;
    QString m_replayed; ///< the host that stands for it
};

} // namespace raincast
