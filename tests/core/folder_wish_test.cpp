// SPDX-License-Identifier: MIT
#include "core/folder_wish.h"
#include "support/files.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>

namespace raincast {
namespace {

class FolderWishTest : public ::testing::Test {
protected:
    [[nodiscard]] qsizetype notes() const {
        return QDir(path).entryList({".wish-*"}, QDir::Files | QDir::Hidden).size();
    }

    QTemporaryDir folder;
    QString path = folder.filePath("a/b");
};

TEST_F(FolderWishTest, TheGreatestOfTheLivingCounts) {
    const FolderWish few(path, 4);
    EXPECT_EQ(few.greatest(), 4);
    std::optional<FolderWish> many(std::in_place, path, 26);
    EXPECT_EQ(few.greatest(), 26);
    EXPECT_EQ(many->greatest(), 26);
    EXPECT_EQ(notes(), 2);
    many.reset();
    EXPECT_EQ(few.greatest(), 4);
    EXPECT_EQ(notes(), 1);
}

TEST_F(FolderWishTest, WhatADeadProgramLeftDoesNotCount) {
    const FolderWish few(path, 4);
    writeFile(path + "/.wish-abcdef", "26\n");
    EXPECT_EQ(few.greatest(), 4);
    EXPECT_EQ(notes(), 1);
}

TEST_F(FolderWishTest, AFolderThatCannotBeMadeDoesNoHarm) {
    writeFile(folder.filePath("a"), "a file");
    const FolderWish few(path, 4);
    EXPECT_EQ(few.greatest(), 4);
}

} // namespace
} // namespace raincast
