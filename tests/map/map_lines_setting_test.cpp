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
        CMapLines::show(CMapLines::position, true);
        CMapLines::show(CMapLines::navigation, true);
    }
    [[nodiscard]] RegistryStore store() const {
        return {m_folder.filePath("machine.json"), m_folder.filePath("user.json")};
    }

    QTemporaryDir m_folder;
};

TEST_F(MapLinesSettingTest, BothLinesAreWantedAtFirst) {
    EXPECT_TRUE(CMapLines::shown(CMapLines::position));
    EXPECT_TRUE(CMapLines::shown(CMapLines::navigation));
    RegistryStore empty = store();
    PersistantData::loadAll(empty, QStringLiteral("Test"));
    EXPECT_TRUE(CMapLines::shown(CMapLines::position));
    EXPECT_TRUE(CMapLines::shown(CMapLines::navigation));
}

TEST_F(MapLinesSettingTest, TheChoiceIsKept) {
    CMapLines::show(CMapLines::navigation, false);
    {
        RegistryStore saved = store();
        EXPECT_TRUE(PersistantData::saveAll(saved, QStringLiteral("Test")));
    }
    CMapLines::show(CMapLines::navigation, true);
    CMapLines::show(CMapLines::position, false);
    RegistryStore loaded = store();
    PersistantData::loadAll(loaded, QStringLiteral("Test"));
    EXPECT_FALSE(CMapLines::shown(CMapLines::navigation));
    EXPECT_TRUE(CMapLines::shown(CMapLines::position));
}

TEST_F(MapLinesSettingTest, EachLineIsAValueOfTheRecord) {
    CMapLines::show(CMapLines::position, false);
    RegistryStore saved = store();
    EXPECT_TRUE(PersistantData::saveAll(saved, QStringLiteral("Test")));
    const QByteArray file = readFile(m_folder.filePath("user.json"));
    EXPECT_TRUE(file.contains("Test/CMapLines\"")) << file.toStdString();
    EXPECT_TRUE(file.contains("\"show_position\""));
    EXPECT_TRUE(file.contains("\"show_navigation\""));
}

} // namespace
} // namespace raincast
