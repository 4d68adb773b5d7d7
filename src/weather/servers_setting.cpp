// SPDX-License-Identifier: MIT
#include "weather/servers_setting.h"

#include "core/user_change.h"
#include "persist/persistant_data.h"

#include <array>

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

/// What hosts mean in settings without a source.
WeatherSource sourceOf(const RadarServers& hosts) {
    return isDefault(hosts.radar) && isDefault(hosts.basemap) ? ServersSetting::kDefaultSource
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

    WeatherSource source = kDefaultSource;
    RadarServers hosts{defaultHost(), defaultHost()};

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
    UserChange::announce();
    ServersChange change;
    Listener<ServersChange>::Notify(change);
}

void ServersSetting::set(const RadarServers& hosts) {
    persistant.hosts = hosts;
    persistant.source = sourceOf(hosts);
}

void ServersSetting::setForThisRun(const QString& radarServer, const QString& basemapServer) {
    persistant.useForThisRun("radar_server", persistant.hosts.radar, radarServer);
    persistant.useForThisRun("basemap_server", persistant.hosts.basemap, basemapServer);
}

WeatherSource ServersSetting::inUse() {
    return persistant.source;
}

RadarServers ServersSetting::current() {
    if (inUse() != WeatherSource::another) {
        return {ownServer(inUse()), ownServer(inUse())};
    }
    RadarServers servers = persistant.hosts;
    if (isDefault(servers.radar) != isDefault(servers.basemap)) {
        // Layers are the same in any weather: they need no network.
        QString& own = isDefault(servers.radar) ? servers.radar : servers.basemap;
        own = ownServer(&own == &servers.radar ? kDefaultSource : WeatherSource::sample);
    }
    return servers;
}

} // namespace raincast
