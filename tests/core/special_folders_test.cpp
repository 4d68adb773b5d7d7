// SPDX-License-Identifier: MIT
#include "core/special_folders.h"
#include "support/files.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class SpecialFoldersTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_folder.isValid());
        m_before = qgetenv("XDG_DATA_HOME");
        useDataHome(m_folder.filePath("data/home"));
    }
    void TearDown() override { qputenv("XDG_DATA_HOME", m_before); }
    static void useDataHome(const QString& path) {
        qputenv("XDG_DATA_HOME", QFile::encodeName(path));
    }

    QTemporaryDir m_folder;
    QByteArray m_before;
};

TEST_F(SpecialFoldersTest, AreMadeWhereTheyAreMissing) {
    const QString root = m_folder.filePath("data/home");
    EXPECT_EQ(applicationDataRoot(), root);
    EXPECT_EQ(applicationFolder(), root + "/Quorvane/Raincast_1");
    EXPECT_TRUE(QFileInfo(root + "/Quorvane/Raincast_1").isDir());
    EXPECT_EQ(folderInApplicationData("a/b"), root + "/a/b");
    EXPECT_TRUE(QFileInfo(root + "/a/b").isDir());
}

TEST_F(SpecialFoldersTest, AreEmptyWithoutARoot) {
    writeFile(m_folder.filePath("file"));
    useDataHome(m_folder.filePath("file"));
    EXPECT_FALSE(applicationDataRoot());
    EXPECT_FALSE(applicationFolder());
    useDataHome(m_folder.filePath("file/below"));
    EXPECT_FALSE(folderInApplicationData("a"));
}

TEST_F(SpecialFoldersTest, AreNamedEvenWhereTheyCannotBeMade) {
    writeFile(m_folder.filePath("data/home/Quorvane"));
    EXPECT_EQ(applicationFolder(), m_folder.filePath("data/home/Quorvane/Raincast_1"));
    EXPECT_FALSE(QFileInfo::exists(*applicationFolder()));
}

} // namespace
} // namespace raincast
