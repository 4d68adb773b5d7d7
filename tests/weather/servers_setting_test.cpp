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
        ServersSetting::set({ServersSetting::localServer(), ServersSetting::localServer()});
    }

    [[nodiscard]] RegistryStore store() const {
        return {m_folder.filePath("machine.json"), m_folder.filePath("user.json")};
    }

    QTemporaryDir m_folder;
};

TEST_F(ServersTest, BothAreAtFirstTheInstalledOne) {
    EXPECT_EQ(ServersSetting::current().radar, QStringLiteral("127.0.0.1:8155"));
    EXPECT_EQ(ServersSetting::current().basemap, QStringLiteral("127.0.0.1:8155"));
}

TEST_F(ServersTest, TheSettingsKeepThem) {
    ServersSetting::set({"radar.example", "maps.example:8080"});
    RegistryStore saved = store();
    ASSERT_TRUE(PersistantData::saveAll(saved, "Raincast_1"));
    ServersSetting::set({ServersSetting::localServer(), ServersSetting::localServer()});
    RegistryStore loaded = store();
    PersistantData::loadAll(loaded, "Raincast_1");
    EXPECT_EQ(ServersSetting::current().radar, QStringLiteral("radar.example"));
    EXPECT_EQ(ServersSetting::current().basemap, QStringLiteral("maps.example:8080"));
}

TEST_F(ServersTest, AStoredTextThatIsNoHostKeepsTheDefault) {
    RegistryStore written = store();
    written.setString(RegistryStore::Branch::user, kKey, "radar_server", "http://radar.example/");
    ASSERT_TRUE(written.save(RegistryStore::Branch::user));
    RegistryStore loaded = store();
    PersistantData::loadAll(loaded, "Raincast_1");
    EXPECT_EQ(ServersSetting::current().radar, ServersSetting::localServer());
}

} // namespace
} // namespace raincast
