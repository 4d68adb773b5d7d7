// SPDX-License-Identifier: MIT
#include "core/folders.h"
#include "support/files.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace raincast {
namespace {

class FoldersTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_folder.isValid()); }
    QString at(const QString& name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
};

TEST_F(FoldersTest, EnsureFolderMakesWhatIsMissing) {
    EXPECT_TRUE(EnsureFolder(at("a/b/c")));
    EXPECT_TRUE(QFileInfo(at("a/b/c")).isDir());
    EXPECT_TRUE(EnsureFolder(at("a/b/c"))) << "it is there already";
    EXPECT_TRUE(EnsureFolder(at("a/b/c/")));
    EXPECT_TRUE(EnsureFolder("/"));
    EXPECT_TRUE(EnsureFolder("."));
}

TEST_F(FoldersTest, EnsureFolderFailsWhereNoFolderCanBe) {
    writeFile(at("file"));
    EXPECT_FALSE(EnsureFolder(at("file")));
    EXPECT_FALSE(EnsureFolder(at("file/below/it")));
    EXPECT_FALSE(EnsureFolder(""));
    EXPECT_FALSE(EnsureFolder("x")) << "one character that does not exist";
    EXPECT_FALSE(EnsureFolder("/proc/no/such"));
    EXPECT_FALSE(EnsureFolder(at(QString(300, u'n')))) << "longer than names may be";
}

TEST_F(FoldersTest, MakeFolderSaysWhyItCannot) {
    EXPECT_TRUE(makeFolder(at("Z\u00FCrich/b")));
    EXPECT_TRUE(QFileInfo(at("Z\u00FCrich/b")).isDir());
    EXPECT_TRUE(makeFolder(at("Z\u00FCrich/b"))) << "it is there already";
    writeFile(at("file"));
    for (const char* name : {"file", "file/below/it"}) {
        const auto made = makeFolder(at(name));
        ASSERT_FALSE(made) << name;
        EXPECT_EQ(made.error(), "Not a directory") << name;
    }
    EXPECT_FALSE(makeFolder("/proc/no/such"));
}

TEST_F(FoldersTest, EnsureFolderTakesALinkToAFolder) {
    ASSERT_TRUE(EnsureFolder(at("real")));
    ASSERT_TRUE(QFile::link(at("real"), at("link")));
    ASSERT_TRUE(QFile::link(at("nowhere"), at("dangling")));
    EXPECT_TRUE(EnsureFolder(at("link/below")));
    EXPECT_TRUE(QFileInfo(at("real/below")).isDir());
    EXPECT_FALSE(EnsureFolder(at("dangling")));
}

TEST(FilePatternTest, MatchesWholeNamesWithoutRegardToCase) {
    struct Row {
        QString name;
        QString pattern;
        bool matches;
    };
    const Row rows[] = {
        {"BMX_20070615_1830_N0R.gif", "\?\?\?_2*", true},
        {"BMX_20070615_1830_N0R.gif", "BMX_2*_N0R.gif", true},
        {"bmx_20070615_1830_n0r.GIF", "BMX_2*_N0R.gif", true},
        {"BMX_20070615_1830_N0Z.gif", "BMX_2*_N0R.gif", false},
        {"BMX_Warnings_0.gif", "\?\?\?_w*", true},
        {"BMX_Warnings_0.gif", "\?\?\?_2*", false},
        {"BMX_", "\?\?\?_*", true},
        {"BM_2", "\?\?\?_2*", false},
        {"BMXX_2", "\?\?\?_2*", false},
        {"xBMX_2", "BMX_2*", false},
        {"", "*", true},
        {"", "?", false},
        {"a", "?", true},
        {"ab", "?", false},
        {"no dot", "*.*", true},
        {"a.b", "*.*", true},
        {"nodot", "*.gif", false},
        {"line\nend", "line*", true},
        {"abc", "a[b]c", false},
        {"a[b]c", "a[b]c", true},
        {"a+b(c", "a+b(c", true},
        {"a\\b", "a\\b", true},
        {QString::fromUtf8("Ä_2"), QString::fromUtf8("ä_2*"), true},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(matchesFilePattern(row.name, row.pattern), row.matches)
            << qPrintable(row.name) << " by " << qPrintable(row.pattern);
    }
}

TEST_F(FoldersTest, DeletesTheMatchesThatAreNotKept) {
    for (const char* name :
         {"BMX_20070615_1830_N0R.gif", "BMX_20070615_1840_N0R.gif", "bmx_20070615_1850_n0r.GIF",
          "BMX_20070615_1830_NCR.gif", "BMX_Warnings_0.gif", "other"}) {
        writeFile(at(name));
    }
    DeleteMatchingExcept(m_folder.path(), "BMX_2*_N0R.gif", {"BMX_20070615_1840_N0R.gif"});
    EXPECT_EQ(
        namesIn(m_folder.path()),
        "BMX_20070615_1830_NCR.gif BMX_20070615_1840_N0R.gif BMX_Warnings_0.gif other"
    );
    DeleteMatchingExcept(m_folder.path(), "\?\?\?_*", {});
    EXPECT_EQ(namesIn(m_folder.path()), "other");
}

TEST_F(FoldersTest, KeptNamesCountLetterCase) {
    writeFile(at("BMX_2_n0r.gif"));
    DeleteMatchingExcept(m_folder.path(), "BMX_2*", {"BMX_2_N0R.gif"});
    EXPECT_EQ(namesIn(m_folder.path()), "");
}

TEST_F(FoldersTest, DeletesNothingBelowTheFolderAndNothingThroughLinks) {
    writeFile(at("outside/BMX_2.gif"));
    writeFile(at("cache/BMX_2folder/BMX_2.gif"));
    ASSERT_TRUE(QFile::link(at("outside/BMX_2.gif"), at("cache/BMX_2link")));
    ASSERT_TRUE(QFile::link(at("outside"), at("cache/BMX_2folderlink")));
    ASSERT_TRUE(QFile::link(at("nowhere"), at("cache/BMX_2dangling")));
    ASSERT_EQ(mkfifo(qPrintable(at("cache/BMX_2pipe")), 0600), 0);
    DeleteMatchingExcept(at("cache"), "\?\?\?_2*", {});
    EXPECT_EQ(namesIn(at("cache")), "BMX_2folder") << "the links went, and the pipe";
    EXPECT_EQ(namesIn(at("cache/BMX_2folder")), "BMX_2.gif");
    EXPECT_EQ(namesIn(at("outside")), "BMX_2.gif");

    ASSERT_TRUE(QFile::link(at("outside"), at("linked")));
    DeleteMatchingExcept(at("linked"), "\?\?\?_2*", {});
    EXPECT_EQ(namesIn(at("outside")), "BMX_2.gif") << "a folder that is a link is left alone";
}

TEST_F(FoldersTest, DeletesNothingWithoutAFolder) {
    writeFile(at("cache/BMX_2.gif"));
    DeleteMatchingExcept(at("missing"), "*", {});
    DeleteMatchingExcept(at("cache/BMX_2.gif"), "*", {});
    DeleteMatchingExcept(at("cache"), "", {});
    DeleteMatchingExcept(m_folder.path(), "cache/*", {});
    EXPECT_EQ(namesIn(at("cache")), "BMX_2.gif");

    // An empty path is not the folder that the process happens to run in.
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(at("cache")));
    DeleteMatchingExcept("", "*", {});
    ASSERT_TRUE(QDir::setCurrent(before));
    EXPECT_EQ(namesIn(at("cache")), "BMX_2.gif");
}

TEST_F(FoldersTest, DeletesNamesThatAreNoText) {
    const QByteArray odd = QFile::encodeName(at("BMX_2")) + "\xFF\xFE.gif";
    FILE* const file = std::fopen(odd.constData(), "w");
    ASSERT_NE(file, nullptr);
    std::fclose(file);
    DeleteMatchingExcept(m_folder.path(), "\?\?\?_2*", {});
    EXPECT_EQ(namesIn(m_folder.path()), "");
}

TEST_F(FoldersTest, MoveTreeMovesAndCounts) {
    writeFile(at("old/BMX/1"), "one");
    writeFile(at("old/BMX/2"), "two");
    writeFile(at("old/MUX/1"), "three");
    std::vector<int> counts;
    EXPECT_TRUE(MoveTree(at("old"), at("new/deep"), [&](int moved) { counts.push_back(moved); }));
    EXPECT_EQ(counts, (std::vector<int>{1, 2, 3}));
    EXPECT_FALSE(QFileInfo::exists(at("old")));
    EXPECT_EQ(namesIn(at("new/deep")), "BMX MUX");
    EXPECT_EQ(readFile(at("new/deep/BMX/2")), "two");
}

TEST_F(FoldersTest, MoveTreeLeavesBothEndsWhereItStops) {
    writeFile(at("old/BMX/1"), "one");
    writeFile(at("old/MUX/1"), "two");
    writeFile(at("old/TLX/1"), "three");
    writeFile(at("new/MUX"), "in the way");
    EXPECT_FALSE(MoveTree(at("old"), at("new")));
    EXPECT_EQ(namesIn(at("new")), "BMX MUX");
    EXPECT_EQ(namesIn(at("old")), "MUX TLX");
    EXPECT_EQ(readFile(at("new/BMX/1")), "one");
    EXPECT_EQ(readFile(at("new/MUX")), "in the way");
}

TEST_F(FoldersTest, MoveTreeOrBringBackUndoesWhatItDid) {
    writeFile(at("old/BMX/1"), "one");
    writeFile(at("old/BMX/2"), "two");
    writeFile(at("old/MUX/1"), "three");
    writeFile(at("new/BMX/9"), "there before");
    writeFile(at("new/MUX"), "in the way");
    EXPECT_FALSE(moveTreeOrBringBack(at("old"), at("new")));
    EXPECT_EQ(namesIn(at("old")), "BMX MUX");
    EXPECT_EQ(namesIn(at("old/BMX")), "1 2");
    EXPECT_EQ(readFile(at("old/BMX/1")), "one");
    EXPECT_EQ(readFile(at("old/MUX/1")), "three");
    EXPECT_EQ(namesIn(at("new")), "BMX MUX");
    EXPECT_EQ(namesIn(at("new/BMX")), "9");

    ASSERT_TRUE(QFile::remove(at("new/MUX")));
    EXPECT_TRUE(moveTreeOrBringBack(at("old"), at("new")));
    EXPECT_EQ(namesIn(at("new/BMX")), "1 2 9");
}

} // namespace
} // namespace raincast
