// SPDX-License-Identifier: MIT
#include "weather/servers_setting.h"

#include "core/user_change.h"
#include "persist/persistant_data.h"
#include "radar/cache.h"

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
    SourceName{WeatherSource::past, QLatin1String("past")},
    SourceName{WeatherSource::another, QLatin1String("another")},
};

QString nameOf(WeatherSource source) {
    return kSourceNames[static_cast<std::size_t>(source)].name;
}

bool isDefault(const QString& host) {
    return host == ServersSetting::defaultHost();
}

/// The cache's folder of a storm that is seen now and is not to be kept.
QString passingBranch() {
    const bool passes =
        ServersSetting::source() == WeatherSource::past && !ServersSetting::past().keeps;
    return passes ? ServersSetting::cacheBranch() : QString();
}

void publishChange(ServersChange change = {}) {
    Listener<ServersChange>::Notify(change);
}

/// What hosts mean in settings without a source.
WeatherSource sourceOf(const RadarServers& hosts) {
    return isDefault(hosts.radar) && isDefault(hosts.basemap) ? ServersSetting::defaultSource()
                                                              : WeatherSource::another;
}

/// The viewer's own server of a source.
QString ownServer(WeatherSource source) {
    if (source == WeatherSource::past) {
        return QString::fromUtf16(kOwnReplayServer) + textOf(ServersSetting::past().replay);
    }
    return QString::fromUtf16(source == WeatherSource::live ? kOwnLiveServer : kOwnSampleServer);
}

/// Replays of one storm share a folder, whatever their speed.
QString branchOf(const Replay& replay) {
    return QString::fromUtf16(kReplayBranch) + folderTextOf(replay);
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
    PastStormChoice past;

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
        exchangePast(values);
        standsIn = standsIn && !values.loading();
    }
    static void exchangeHost(SettingsExchange& values, const char* name, QString& member) {
        QString host = member;
        values.string(name, host);
        if (isServer(host)) {
            member = host;
        }
    }
    void exchangePast(SettingsExchange& values) {
        QString text = textOf(past.replay);
        values.string("replay", text);
        past.replay = readReplay(text).value_or(past.replay);
        std::uint32_t keeps = past.keeps ? 1 : 0;
        values.dword("keep_replay", keeps);
        past.keeps = keeps != 0;
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
    const QString before = passingBranch();
    persistant.source = source;
    persistant.hosts = hosts;
    persistant.standsIn = false;
    UserChange::announce();
    publishChange({{}, before == cacheBranch() ? QString() : before});
}

void ServersSetting::choosePast(const PastStormChoice& choice) {
    const QString before = passingBranch();
    persistant.past = choice;
    persistant.past.siteId.clear();
    persistant.source = WeatherSource::past;
    persistant.standsIn = false;
    UserChange::announce();
    publishChange({choice.siteId, before == cacheBranch() ? QString() : before});
}

const PastStormChoice& ServersSetting::past() {
    return persistant.past;
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

QString ServersSetting::cacheBranch() {
    switch (inUse()) {
    case WeatherSource::sample:
        return QString::fromUtf16(kSampleBranch);
    case WeatherSource::past:
        return branchOf(persistant.past.replay);
    case WeatherSource::live:
    case WeatherSource::another:
        break;
    }
    return {};
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
