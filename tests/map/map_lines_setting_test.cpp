// SPDX-License-Identifier: MIT
#include "map/map_lines_setting.h"
#include "persist/persistant_data.h"
#include "persist/registry_store.h"
#include "support/files.h"

#include <QTemporaryDir>

namespace raincast {
namespace {

class MapLinesSettingTest : public testing::Test {
protected:
    ~MapLinesSettingTest() override {
        MapLinesSetting::show(MapLinesSetting::position, true);
        MapLinesSetting::show(MapLinesSetting::navigation, true);
    }
    [[nodiscard]] RegistryStore store() const {
        return {m_folder.filePath("machine.json"), m_folder.filePath("user.json")};
    }

    QTemporaryDir m_folder;
};

TEST_F(MapLinesSettingTest, BothLinesAreWantedAtFirst) {
    EXPECT_TRUE(MapLinesSetting::shown(MapLinesSetting::position));
    EXPECT_TRUE(MapLinesSetting::shown(MapLinesSetting::navigation));
    RegistryStore empty = store();
    PersistantData::loadAll(empty, QStringLiteral("Test"));
    EXPECT_TRUE(MapLinesSetting::shown(MapLinesSetting::position));
    EXPECT_TRUE(MapLinesSetting::shown(MapLinesSetting::navigation));
}

TEST_F(MapLinesSettingTest, TheChoiceIsKept) {
    MapLinesSetting::show(MapLinesSetting::navigation, false);
    {
        RegistryStore saved = store();
        EXPECT_TRUE(PersistantData::saveAll(saved, QStringLiteral("Test")));
    }
    MapLinesSetting::show(MapLinesSetting::navigation, true);
    MapLinesSetting::show(MapLinesSetting::position, false);
    RegistryStore loaded = store();
    PersistantData::loadAll(loaded, QStringLiteral("Test"));
    EXPECT_FALSE(MapLinesSetting::shown(MapLinesSetting::navigation));
    EXPECT_TRUE(MapLinesSetting::shown(MapLinesSetting::position));
}

TEST_F(MapLinesSettingTest, EachLineIsAValueOfTheRecord) {
    MapLinesSetting::show(MapLinesSetting::position, false);
    RegistryStore saved = store();
    EXPECT_TRUE(PersistantData::saveAll(saved, QStringLiteral("Test")));
    const QByteArray file = readFile(m_folder.filePath("user.json"));
    EXPECT_TRUE(file.contains("Test/CMapLines\"")) << file.toStdString();
    EXPECT_TRUE(file.contains("\"show_position\""));
    EXPECT_TRUE(file.contains("\"show_navigation\""));
}

} // namespace
} // namespace raincast
