// SPDX-License-Identifier: MIT
#include "app/local_servers.h"

#include <utility>

namespace raincast {

namespace {

/// As far back as frames are listed: longer than a day.
const QStringList kListing = {QStringLiteral("--hours"), QStringLiteral("26")};

bool isWanted(const char16_t* server) {
    const QString name = QString::fromUtf16(server);
    const RadarServers servers = ServersSetting::current();
    return servers.radar == name || servers.basemap == name;
}

bool isReplay(const QString& host) {
    return host.startsWith(QStringView(kOwnReplayServer));
}

} // namespace

LocalServers::LocalServers(QString program, const QStringList& liveArguments)
    : m_program(program), m_liveArguments(liveArguments),
      m_live(program, QStringList(QStringLiteral("--live")) + kListing + liveArguments),
      m_sample(std::move(program), QStringList(QStringLiteral("--sample")) + kListing) {}

template<class Self>
auto LocalServers::standsFor(Self& self, const QString& host) -> decltype(&self.m_live) {
    if (host == QStringView(kOwnLiveServer)) {
        return &self.m_live;
    }
    if (host == QStringView(kOwnSampleServer)) {
        return &self.m_sample;
    }
    return isReplay(host) && host == self.m_replayed ? self.m_replay.get() : nullptr;
}

void LocalServers::makeForReplay(const QString& host) {
    if (host != m_replayed) {
        m_replayed = host;
        const QStringList when = {
            QStringLiteral("--live"), QStringLiteral("--replay"),
            host.sliced(QStringView(kOwnReplayServer).size())};
        m_replay = std::make_unique<LocalServer>(m_program, when + kListing + m_liveArguments);
    }
}

void LocalServers::EstablishConnection(const QString& host, Ready ready) {
    if (isReplay(host)) {
        makeForReplay(host);
    }
    if (LocalServer* const server = standsFor(*this, host)) {
        server->use([ready = std::move(ready)](const QString& address) {
            ready(!address.isEmpty());
        });
    } else {
        ready(!host.isEmpty());
    }
}

QString LocalServers::addressOf(const QString& host) const {
    if (const LocalServer* const server = standsFor(*this, host)) {
        return server->address();
    }
    return isReplay(host) ? QString() : host;
}

void LocalServers::onPublished(ServersChange& /*change*/) {
    // Behind sample weather that stands in it looks for a way to live radar.
    if (!isWanted(kOwnLiveServer) && ServersSetting::source() != WeatherSource::live) {
        m_live.end();
    }
    if (!isWanted(kOwnSampleServer)) {
        m_sample.end();
    }
    if (m_replayed != ServersSetting::current().radar) {
        m_replay.reset();
        m_replayed.clear();
    }
}

} // namespace raincast
