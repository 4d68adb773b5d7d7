// SPDX-License-Identifier: MIT
#include "weather/servers_setting.h"

#include "core/user_change.h"
#include "persist/persistant_data.h"

namespace raincast {

/// The settings record. A stored text of another form keeps the default.
class ServersSetting::Persistant : public PersistantData {
public:
    Persistant() : PersistantData("CServers") {}

    RadarServers servers{localServer(), localServer()};

    void useForThisRun(const char* value, QString& member, const QString& host) {
        if (!host.isEmpty()) {
            setForThisRun(value, member, host);
        }
    }

private:
    void exchange(SettingsExchange& values) override {
        exchangeHost(values, "radar_server", servers.radar);
        exchangeHost(values, "basemap_server", servers.basemap);
    }
    static void exchangeHost(SettingsExchange& values, const char* name, QString& member) {
        QString host = member;
        values.string(name, host);
        if (isServer(host)) {
            member = host;
        }
    }
};

namespace {

ServersSetting::Persistant persistant;

} // namespace

QString ServersSetting::localServer() {
    return QString::fromUtf16(kLocalServer);
}

RadarServers ServersSetting::current() {
    return persistant.servers;
}

void ServersSetting::set(const RadarServers& servers) {
    persistant.servers = servers;
    UserChange::announce();
}

void ServersSetting::setForThisRun(const QString& radarServer, const QString& basemapServer) {
    persistant.useForThisRun("radar_server", persistant.servers.radar, radarServer);
    persistant.useForThisRun("basemap_server", persistant.servers.basemap, basemapServer);
}

} // namespace raincast
