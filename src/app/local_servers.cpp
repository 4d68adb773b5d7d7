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
    : m_live(program, QStringList(QStringLiteral("--live")) + kListing + liveArguments),
      m_sample(std::move(program), QStringList(QStringLiteral("--sample")) + kListing) {}

void LocalServers::EstablishConnection(const QString& host, Ready ready) {
    const auto tell = [ready = std::move(ready)](const QString& address) {
        ready(!address.isEmpty());
    };
    if (host == QStringView(kOwnLiveServer)) {
        m_live.use(tell);
    } else if (host == QStringView(kOwnSampleServer)) {
        m_sample.use(tell);
    } else {
        tell(host);
    }
}

QString LocalServers::addressOf(const QString& host) const {
    if (host == QStringView(kOwnLiveServer)) {
        return m_live.address();
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
}

} // namespace raincast
