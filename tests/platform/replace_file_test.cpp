// SPDX-License-Identifier: MIT
#include "platform/replace_file.h"
#include "support/full_disk.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

TEST(ReplaceFileTest, CreatesAndReplaces) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a"));
    EXPECT_TRUE(replaceFile(path, "one"));
    EXPECT_EQ(contentOf(path), "one");
    EXPECT_TRUE(replaceFile(path, "another"));
    EXPECT_EQ(contentOf(path), "another");
    EXPECT_TRUE(replaceFile(path, {}));
    EXPECT_EQ(contentOf(path), "");
}

TEST(ReplaceFileTest, AFullDiskLeavesTheOldFileAndNothingElse) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a"));
    ASSERT_TRUE(replaceFile(path, "old"));
    for (const int size : {100, 100'000}) {
        const FullDisk disk(50);
        EXPECT_FALSE(replaceFile(path, QByteArray(size, 'n')));
    }
    EXPECT_EQ(contentOf(path), "old");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 1);
}

TEST(ReplaceFileTest, AMissingFolderFails) {
    const QTemporaryDir folder;
    EXPECT_FALSE(replaceFile(folder.filePath(QStringLiteral("none/a")), "one"));
}

} // namespace
} // namespace raincast
