// SPDX-License-Identifier: MIT
#include "persist/persistant_data.h"
#include "persist/registry_store.h"
#include "weather/servers_setting.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

const QString kKey = QStringLiteral("Software/Quorvane/Raincast_1/CServers");

class ServersTest : public ::testing::Test {
protected:
    ~ServersTest() override {
        ServersSetting::set({ServersSetting::defaultHost(), ServersSetting::defaultHost()});
    }

    [[nodiscard]] RegistryStore store() const {
        return {m_folder.filePath("machine.json"), m_folder.filePath("user.json")};
    }

    void save() const {
        RegistryStore saved = store();
        ASSERT_TRUE(PersistantData::saveAll(saved, "Raincast_1"));
    }
    void load() const {
        RegistryStore loaded = store();
        PersistantData::loadAll(loaded, "Raincast_1");
    }
    void write(const QString& value, const QString& text) const {
        RegistryStore written = store();
        written.setString(RegistryStore::Branch::user, kKey, value, text);
        ASSERT_TRUE(written.save(RegistryStore::Branch::user));
    }
    static RadarServers own(const char16_t* name) {
        return {QString::fromUtf16(name), QString::fromUtf16(name)};
    }

    QTemporaryDir m_folder;
};

TEST_F(ServersTest, AtFirstTheViewersOwnServerIsUsed) {
    EXPECT_EQ(ServersSetting::source(), ServersSetting::defaultSource());
    EXPECT_EQ(ServersSetting::hosts().radar, QStringLiteral("127.0.0.1:8155"));
    EXPECT_EQ(ServersSetting::hosts().basemap, QStringLiteral("127.0.0.1:8155"));
}

TEST_F(ServersTest, EachSourceHasItsOwnServers) {
    const RadarServers hosts{"radar.example", "maps.example:8080"};
    ServersSetting::choose(WeatherSource::live, hosts);
    EXPECT_EQ(ServersSetting::current(), own(kOwnLiveServer));
    ServersSetting::choose(WeatherSource::sample, hosts);
    EXPECT_EQ(ServersSetting::current(), own(kOwnSampleServer));
    ServersSetting::choose(WeatherSource::another, hosts);
    EXPECT_EQ(ServersSetting::current(), hosts);
    EXPECT_EQ(ServersSetting::inUse(), WeatherSource::another);
}

TEST_F(ServersTest, NoServerOfTheUsersHasTheNameOfAnOwnOne) {
    EXPECT_FALSE(isServer(QString::fromUtf16(kOwnLiveServer)));
    EXPECT_FALSE(isServer(QString::fromUtf16(kOwnSampleServer)));
}

TEST_F(ServersTest, AChoiceIsKeptWithItsHosts) {
    for (const WeatherSource source :
         {WeatherSource::live, WeatherSource::sample, WeatherSource::another}) {
        ServersSetting::choose(source, {"radar.example", "maps.example:8080"});
        save();
        ServersSetting::set({ServersSetting::defaultHost(), ServersSetting::defaultHost()});
        load();
        EXPECT_EQ(ServersSetting::source(), source);
        EXPECT_EQ(ServersSetting::hosts(), (RadarServers{"radar.example", "maps.example:8080"}));
    }
}

TEST_F(ServersTest, TheDefaultHostsMayBeAnotherServer) {
    const RadarServers usual{ServersSetting::defaultHost(), ServersSetting::defaultHost()};
    ServersSetting::choose(WeatherSource::another, usual);
    save();
    ServersSetting::set(usual);
    load();
    EXPECT_EQ(ServersSetting::source(), WeatherSource::another);
    EXPECT_EQ(ServersSetting::current(), usual);
}

TEST_F(ServersTest, SettingsOfAnEarlierVersionKeepTheirMeaning) {
    write("radar_server", "radar.example");
    load();
    EXPECT_EQ(ServersSetting::source(), WeatherSource::another);
    EXPECT_EQ(
        ServersSetting::current(),
        (RadarServers{"radar.example", QString::fromUtf16(kOwnSampleServer)})
    );
    write("basemap_server", "maps.example");
    load();
    EXPECT_EQ(ServersSetting::current(), (RadarServers{"radar.example", "maps.example"}));
    write("radar_server", "127.0.0.1:8155");
    write("basemap_server", "127.0.0.1:8155");
    load();
    EXPECT_EQ(ServersSetting::source(), ServersSetting::defaultSource());
}

TEST_F(ServersTest, AnOptionMeansAnotherServerForThisRun) {
    ServersSetting::choose(WeatherSource::sample, ServersSetting::hosts());
    save();
    ServersSetting::setForThisRun({}, {});
    EXPECT_EQ(ServersSetting::source(), WeatherSource::sample);
    ServersSetting::setForThisRun("radar.example", "maps.example");
    EXPECT_EQ(ServersSetting::current(), (RadarServers{"radar.example", "maps.example"}));
    save();
    load();
    EXPECT_EQ(ServersSetting::source(), WeatherSource::sample);
    EXPECT_EQ(ServersSetting::hosts().radar, ServersSetting::defaultHost());
}

struct Ear : Listener<ServersChange> {
    void onPublished(ServersChange& /*change*/) override { ++heard; }
    int heard = 0;
};

TEST_F(ServersTest, AChoiceIsPublished) {
    const Ear ear;
    ServersSetting::choose(WeatherSource::sample, ServersSetting::hosts());
    EXPECT_EQ(ear.heard, 1);
}

TEST_F(ServersTest, SampleWeatherStandsInForLiveRadarUntilTheNextChoiceOrRun) {
    ServersSetting::choose(WeatherSource::live, ServersSetting::hosts());
    const Ear ear;
    ServersSetting::standIn(true);
    ServersSetting::standIn(true);
    EXPECT_EQ(ear.heard, 1);
    EXPECT_EQ(ServersSetting::source(), WeatherSource::live);
    EXPECT_EQ(ServersSetting::inUse(), WeatherSource::sample);
    EXPECT_EQ(ServersSetting::current(), own(kOwnSampleServer));
    save();
    load();
    EXPECT_EQ(ServersSetting::inUse(), WeatherSource::live);
    ServersSetting::standIn(true);
    ServersSetting::choose(WeatherSource::another, {"radar.example", "maps.example"});
    EXPECT_EQ(ServersSetting::inUse(), WeatherSource::another);
    EXPECT_FALSE(ServersSetting::standsIn());
}

TEST_F(ServersTest, ThatLiveRadarWasSeenIsKept) {
    EXPECT_FALSE(ServersSetting::hadLive());
    ServersSetting::noteLive();
    save();
    ServersSetting::set(ServersSetting::hosts());
    EXPECT_FALSE(ServersSetting::hadLive());
    load();
    EXPECT_TRUE(ServersSetting::hadLive());
}

TEST_F(ServersTest, AStoredTextThatIsNoHostOrSourceKeepsTheDefault) {
    write("radar_server", "http://radar.example/");
    write("source", "moon");
    load();
    EXPECT_EQ(ServersSetting::hosts().radar, ServersSetting::defaultHost());
    EXPECT_EQ(ServersSetting::source(), ServersSetting::defaultSource());
}

} // namespace
} // namespace raincast
