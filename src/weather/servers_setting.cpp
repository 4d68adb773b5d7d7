// SPDX-License-Identifier: MIT
#include "weather/servers_setting.h"

#include "core/user_change.h"
#include "persist/persistant_data.h"

#include <array>
#include <utility>

namespace raincast {

namespace {

/// The sources as the settings name them.
struct SourceName {
    WeatherSource source;
    QLatin1String name;
};
constexpr std::array kSourceNames = {
    SourceName{WeatherSource::live, QLatin1String("live")},
    SourceName{WeatherSource::sample, QLatin1String("sample")},
    SourceName{WeatherSource::another, QLatin1String("another")},
};

QString nameOf(WeatherSource source) {
    return kSourceNames[static_cast<std::size_t>(source)].name;
}

bool isDefault(const QString& host) {
    return host == ServersSetting::defaultHost();
}

void publishChange() {
    ServersChange change;
    Listener<ServersChange>::Notify(change);
}

/// What hosts mean in settings without a source.
WeatherSource sourceOf(const RadarServers& hosts) {
    return isDefault(hosts.radar) && isDefault(hosts.basemap) ? ServersSetting::defaultSource()
                                                              : WeatherSource::another;
}

/// The viewer's own server that has real or made-up weather.
QString ownServer(WeatherSource source) {
    return QString::fromUtf16(source == WeatherSource::live ? kOwnLiveServer : kOwnSampleServer);
}

} // namespace

/// The settings record. A stored text of another form keeps the default.
class ServersSetting::Persistant : public PersistantData {
public:
    Persistant() : PersistantData("CServers") {}

    WeatherSource source = defaultSource();
    RadarServers hosts{defaultHost(), defaultHost()};
    std::uint32_t hadLive = 0;
    bool standsIn = false; ///< of this run

    void useForThisRun(const char* value, QString& member, const QString& host) {
        if (!host.isEmpty()) {
            setForThisRun(value, member, host);
            setForThisRun("source", source, WeatherSource::another);
        }
    }

private:
    void exchange(SettingsExchange& values) override {
        exchangeHost(values, "radar_server", hosts.radar);
        exchangeHost(values, "basemap_server", hosts.basemap);
        exchangeSource(values);
        values.dword("had_live", hadLive);
        standsIn = standsIn && !values.loading();
    }
    static void exchangeHost(SettingsExchange& values, const char* name, QString& member) {
        QString host = member;
        values.string(name, host);
        if (isServer(host)) {
            member = host;
        }
    }
    // After the hosts, which say what settings without a source mean.
    void exchangeSource(SettingsExchange& values) {
        QString name = values.loading() ? QString() : nameOf(source);
        values.string("source", name);
        for (const SourceName& row : kSourceNames) {
            if (row.name == name) {
                source = row.source;
                return;
            }
        }
        source = sourceOf(hosts);
    }
};

namespace {

ServersSetting::Persistant persistant;

} // namespace

WeatherSource ServersSetting::defaultSource() {
    return WeatherSource::live;
}

QString ServersSetting::defaultHost() {
    return QString::fromUtf16(kLocalServer);
}

WeatherSource ServersSetting::source() {
    return persistant.source;
}

RadarServers ServersSetting::hosts() {
    return persistant.hosts;
}

void ServersSetting::choose(WeatherSource source, const RadarServers& hosts) {
    persistant.source = source;
    persistant.hosts = hosts;
    persistant.standsIn = false;
    UserChange::announce();
    publishChange();
}

void ServersSetting::set(const RadarServers& hosts) {
    persistant.standsIn = false;
    persistant.hadLive = 0;
    persistant.hosts = hosts;
    persistant.source = sourceOf(hosts);
}

void ServersSetting::setForThisRun(const QString& radarServer, const QString& basemapServer) {
    persistant.useForThisRun("radar_server", persistant.hosts.radar, radarServer);
    persistant.useForThisRun("basemap_server", persistant.hosts.basemap, basemapServer);
}

bool ServersSetting::hadLive() {
    return persistant.hadLive != 0;
}

// It has to be saved even if the program does not end in good order.
void ServersSetting::noteLive() {
    if (std::exchange(persistant.hadLive, 1) == 0) {
        UserChange::announce();
    }
}

void ServersSetting::standIn(bool standsIn) {
    if (std::exchange(persistant.standsIn, standsIn) != standsIn) {
        publishChange();
    }
}

bool ServersSetting::standsIn() {
    return persistant.standsIn;
}

WeatherSource ServersSetting::inUse() {
    const bool isLive = persistant.source == WeatherSource::live;
    return isLive && persistant.standsIn ? WeatherSource::sample : persistant.source;
}

RadarServers ServersSetting::current() {
    if (inUse() != WeatherSource::another) {
        return {ownServer(inUse()), ownServer(inUse())};
    }
    RadarServers servers = persistant.hosts;
    if (isDefault(servers.radar) != isDefault(servers.basemap)) {
        // Layers are the same in any weather: they need no network.
        QString& own = isDefault(servers.radar) ? servers.radar : servers.basemap;
        own = ownServer(&own == &servers.radar ? defaultSource() : WeatherSource::sample);
    }
    return servers;
}

} // namespace raincast
