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

} // namespace

LocalServers::LocalServers(QString program, const QStringList& liveArguments)
    : m_program(program), m_liveArguments(liveArguments),
      m_live(program, QStringList(QStringLiteral("--live")) + kListing + liveArguments),
      m_sample(std::move(program), QStringList(QStringLiteral("--sample")) + kListing) {}

void LocalServers::EstablishConnection(const QString& host, Ready ready) {
    const auto tell = [ready = std::move(ready)](const QString& address) {
        ready(!address.isEmpty());
    };
    if (host == QStringView(kOwnLiveServer)) {
        m_live.use(tell);
    } else if (host == QStringView(kOwnSampleServer)) {
        m_sample.use(tell);
    } else if (host.startsWith(QStringView(kOwnReplayServer))) {
        replay(host).use(tell);
    } else {
        tell(host);
    }
}

LocalServer& LocalServers::replay(const QString& host) {
    if (!m_replay || m_replayed != host) {
        m_replayed = host;
        const QStringList when = {
            QStringLiteral("--live"), QStringLiteral("--replay"),
            host.sliced(QStringView(kOwnReplayServer).size())};
        m_replay = std::make_unique<LocalServer>(m_program, when + kListing + m_liveArguments);
    }
    return *m_replay;
}

QString LocalServers::addressOf(const QString& host) const {
    if (host == QStringView(kOwnLiveServer)) {
        return m_live.address();
    }
    if (host.startsWith(QStringView(kOwnReplayServer))) {
        return m_replay && m_replayed == host ? m_replay->address() : QString();
    }
    return host == QStringView(kOwnSampleServer) ? m_sample.address() : host;
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
