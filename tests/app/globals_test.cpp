// SPDX-License-Identifier: MIT
#include "app/globals.h"
#include "persist/registry_store.h"
#include "support/temporary_home.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

using Branch = RegistryStore::Branch;

const QString kKey = QStringLiteral("Software/Quorvane/Raincast_1/CGlobals");
const QString kConfigFile = QStringLiteral("config_file");

TEST(GlobalsTest, ThePageFilesPathIsTheUsersSetting) {
    const test::TemporaryHome home;
    CGlobals::Persistant settings;
    settings.configFile = QStringLiteral("/somewhere/pages.cfg");
    {
        auto store = RegistryStore::inStandardFolders();
        EXPECT_TRUE(PersistantData::saveAll(store, CGlobals::application()));
    }
    settings.configFile.clear();
    auto store = RegistryStore::inStandardFolders();
    EXPECT_EQ(store.string(Branch::user, kKey, kConfigFile), "/somewhere/pages.cfg");
    EXPECT_EQ(store.string(Branch::machine, kKey, kConfigFile), std::nullopt);
    PersistantData::loadAll(store, CGlobals::application());
    EXPECT_EQ(settings.configFile, "/somewhere/pages.cfg");
}

TEST(GlobalsTest, AnInstanceIsNamedByTitleAndClass) {
    EXPECT_EQ(CGlobals::title(), "Raincast");
    EXPECT_EQ(CGlobals::windowClass(), "TARNWICKE");
    EXPECT_EQ(CGlobals::application(), "Raincast_1");
}

} // namespace
} // namespace raincast
