// SPDX-License-Identifier: MIT
#include "core/resource_module.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

// A resource file as rcc writes it, with one resource: "dialogs/5001", whose content is "A".
const char kResourceFile[] = "71726573000000010000003b0000001400000019000000014100070af835"
                             "23006400690061006c006f00670073000400038331003500300030003100"
                             "000000000200000001000000010000000000020000000100000002000000"
                             "1400000000000100000000";

void writeResourceFile(const QTemporaryDir& folder) {
    QFile file(folder.filePath(QStringLiteral("Res.rcc")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray::fromHex(kResourceFile));
}

TEST(ResourceModuleTest, IdentifiersBelow5000NeedNoFile) {
    const QTemporaryDir empty;
    ResourceModule module(empty.path());
    EXPECT_TRUE(module.provides(0));
    EXPECT_TRUE(module.provides(4999));
    EXPECT_FALSE(module.provides(5000));
}

TEST(ResourceModuleTest, AMissingFileIsTriedAgainOnEachRequest) {
    const QTemporaryDir folder;
    ResourceModule module(folder.path());
    EXPECT_FALSE(module.provides(5001));
    writeResourceFile(folder);
    EXPECT_TRUE(module.provides(5001));

    QFile resource(ResourceModule::path(QStringLiteral("dialogs"), 5001));
    ASSERT_TRUE(resource.open(QIODevice::ReadOnly));
    EXPECT_EQ(resource.readAll(), "A");
}

TEST(ResourceModuleTest, NothingIsRegisteredBeforeItIsNeeded) {
    const QTemporaryDir folder;
    writeResourceFile(folder);
    ResourceModule module(folder.path());
    EXPECT_TRUE(module.provides(4999));
    EXPECT_FALSE(QFile::exists(ResourceModule::path(QStringLiteral("dialogs"), 5001)));
    EXPECT_TRUE(module.provides(5000));
    EXPECT_TRUE(QFile::exists(ResourceModule::path(QStringLiteral("dialogs"), 5001)));
}

TEST(ResourceModuleTest, ADamagedFileCountsAsMissing) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("Res.rcc")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("qres");
    file.close();
    ResourceModule module(folder.path());
    EXPECT_FALSE(module.provides(5000));
}

TEST(ResourceModuleTest, PathsTellTheTwoHoldersApart) {
    EXPECT_EQ(ResourceModule::path(QStringLiteral("images"), 104), u":/raincast/images/104");
    EXPECT_EQ(ResourceModule::path(QStringLiteral("images"), 5104), u":/Res/images/5104");
}

TEST(ResourceModuleTest, AnotherModuleCanBePutInUse) {
    const QTemporaryDir folder;
    writeResourceFile(folder);
    ResourceModule module(folder.path());
    ResourceModule::use(&module);
    EXPECT_TRUE(ResourceModule::current().provides(5000));
    ResourceModule::use(nullptr);
    EXPECT_FALSE(ResourceModule::current().provides(5000));
}

} // namespace
} // namespace raincast
