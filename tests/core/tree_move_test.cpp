// SPDX-License-Identifier: MIT
#include "core/tree_move.h"
#include "support/full_disk.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

namespace raincast {
namespace {

namespace fs = std::filesystem;

/// What a folder holds: relative paths, each with the bytes of a file, "/" for a folder or
/// "-> TARGET" for a link.
using Listing = std::map<std::string, std::string>;

std::string bytesOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

Listing listingOf(const fs::path& folder) {
    Listing listing;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        std::string& what = listing[entry.path().lexically_relative(folder)];
        if (entry.is_symlink()) {
            what = "-> " + fs::read_symlink(entry.path()).string();
        } else if (entry.is_directory()) {
            what = "/";
        } else {
            what = entry.is_regular_file() ? bytesOf(entry.path()) : "special";
        }
    }
    return listing;
}

class TreeMoveTest : public testing::Test {
protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "move-XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        m_root = fs::canonical(name);
        m_old = m_root / "old";
        m_new = m_root / "new";
    }
    void TearDown() override { fs::remove_all(m_root); }

    static void write(const fs::path& file, const std::string& bytes = "x") {
        fs::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
    }

    static bool move(const fs::path& from, const fs::path& to) {
        return TreeMove({}).run(from, to);
    }

    fs::path m_root;
    fs::path m_old;
    fs::path m_new;
};

TEST_F(TreeMoveTest, MovesAFile) {
    write(m_old, "bytes");
    EXPECT_TRUE(move(m_old, m_new));
    EXPECT_EQ(listingOf(m_root), (Listing{{"new", "bytes"}}));
}

TEST_F(TreeMoveTest, ReplacesAFile) {
    write(m_old, "bytes");
    write(m_new, "something longer that was there before");
    EXPECT_TRUE(move(m_old, m_new));
    EXPECT_EQ(listingOf(m_root), (Listing{{"new", "bytes"}}));
}

TEST_F(TreeMoveTest, MovesATreeWithEmptyAndHiddenEntries) {
    const std::string large(200'000, 'z');
    write(m_old / "BMX" / "frame.gif", std::string("a\0b", 3));
    write(m_old / "BMX" / "large", large);
    write(m_old / "BMX" / "empty", "");
    write(m_old / ".hidden", "h");
    fs::create_directories(m_old / "EMPTY" / "below");
    EXPECT_TRUE(move(m_old, m_new / "two" / "down"));
    EXPECT_FALSE(fs::exists(m_old));
    EXPECT_EQ(
        listingOf(m_new / "two" / "down"), (Listing{
                                               {".hidden", "h"},
                                               {"BMX", "/"},
                                               {"BMX/empty", ""},
                                               {"BMX/frame.gif", std::string("a\0b", 3)},
                                               {"BMX/large", large},
                                               {"EMPTY", "/"},
                                               {"EMPTY/below", "/"},
                                           })
    );
}

TEST_F(TreeMoveTest, AddsToWhatIsThere) {
    write(m_old / "BMX" / "both", "moved");
    write(m_old / "BMX" / "moved");
    write(m_new / "BMX" / "both", "there before");
    write(m_new / "BMX" / "before");
    EXPECT_TRUE(move(m_old, m_new));
    EXPECT_EQ(
        listingOf(m_root), (Listing{
                               {"new", "/"},
                               {"new/BMX", "/"},
                               {"new/BMX/before", "x"},
                               {"new/BMX/both", "moved"},
                               {"new/BMX/moved", "x"},
                           })
    );
}

TEST_F(TreeMoveTest, KeepsTheDateOfAFile) {
    write(m_old / "file");
    const auto time = fs::last_write_time(m_old / "file") - std::chrono::hours(1000);
    fs::last_write_time(m_old / "file", time);
    EXPECT_TRUE(move(m_old, m_new));
    EXPECT_EQ(fs::last_write_time(m_new / "file"), time);
}

TEST_F(TreeMoveTest, NothingComesOfNothing) {
    EXPECT_FALSE(move(m_old, m_new));
    EXPECT_FALSE(move("", m_new));
    EXPECT_FALSE(move(m_root / "", ""));
    write(m_old);
    EXPECT_FALSE(move(m_old, ""));
    EXPECT_FALSE(move(m_old / "below a file", m_new));
    EXPECT_FALSE(move(m_old, m_root / "missing" / "new")) << "a file's new folder is not made";
    EXPECT_EQ(listingOf(m_root), (Listing{{"old", "x"}}));
}

TEST_F(TreeMoveTest, WhatIsThereAlreadyStays) {
    write(m_old / "file", "bytes");
    fs::create_directory_symlink(m_old, m_root / "link");
    const Listing before = listingOf(m_root);
    EXPECT_TRUE(move(m_old, m_old));
    EXPECT_TRUE(move(m_old, m_old / ""));
    EXPECT_TRUE(move(m_old, m_old / ".." / "old" / "."));
    EXPECT_TRUE(move(m_old, m_root / "link"));
    EXPECT_TRUE(move(m_root / "link", m_old));
    EXPECT_TRUE(move(m_old / "file", m_old / "file"));
    EXPECT_TRUE(move(m_old / "file", m_root / "link" / "file"));
    EXPECT_EQ(listingOf(m_root), before);
}

TEST_F(TreeMoveTest, OneEndMustNotContainTheOther) {
    write(m_old / "BMX" / "file", "bytes");
    fs::create_directory_symlink(m_old / "BMX", m_root / "link");
    const Listing before = listingOf(m_root);
    EXPECT_FALSE(move(m_old, m_old / "BMX"));
    EXPECT_FALSE(move(m_old, m_old / "not" / "there" / "yet"));
    EXPECT_FALSE(move(m_old, m_root / "link"));
    EXPECT_FALSE(move(m_old, m_root / "link" / "below"));
    EXPECT_FALSE(move(m_old / "BMX", m_old));
    EXPECT_FALSE(move(m_root / "link", m_old));
    EXPECT_EQ(listingOf(m_root), before);
    // A name that only begins like the other is no folder in it.
    EXPECT_TRUE(move(m_old, m_root / "older"));
}

TEST_F(TreeMoveTest, StopsWhereAFileIsInTheWayOfAFolder) {
    write(m_old / "A" / "file");
    write(m_old / "B" / "file", "bytes");
    write(m_old / "C" / "file");
    write(m_new / "B", "in the way");
    EXPECT_FALSE(move(m_old, m_new));
    EXPECT_EQ(
        listingOf(m_root), (Listing{
                               {"new", "/"},
                               {"new/A", "/"},
                               {"new/A/file", "x"},
                               {"new/B", "in the way"},
                               {"old", "/"},
                               {"old/B", "/"},
                               {"old/B/file", "bytes"},
                               {"old/C", "/"},
                               {"old/C/file", "x"},
                           })
    );
    EXPECT_FALSE(move(m_old / "C", m_new / "B" / "below"));
    EXPECT_FALSE(move(m_old / "C", m_new / "B"));
}

TEST_F(TreeMoveTest, StopsWhereAFolderIsInTheWayOfAFile) {
    write(m_old / "file", "bytes");
    fs::create_directories(m_new / "file");
    EXPECT_FALSE(move(m_old, m_new));
    EXPECT_FALSE(move(m_old / "file", m_new / "file"));
    EXPECT_EQ(
        listingOf(m_root),
        (Listing{{"new", "/"}, {"new/file", "/"}, {"old", "/"}, {"old/file", "bytes"}})
    );
}

TEST_F(TreeMoveTest, MovesLinksAsLinks) {
    write(m_root / "outside" / "file", "bytes");
    fs::create_directories(m_old);
    fs::create_directory_symlink(m_root / "outside", m_old / "folder");
    fs::create_symlink(m_root / "outside" / "file", m_old / "file");
    fs::create_symlink("nowhere", m_old / "dangling");
    fs::create_symlink(m_old, m_old / "loop");
    EXPECT_TRUE(move(m_old, m_new));
    EXPECT_FALSE(fs::exists(m_old));
    EXPECT_EQ(listingOf(m_root / "outside"), (Listing{{"file", "bytes"}}));
    EXPECT_EQ(
        listingOf(m_new), (Listing{
                              {"dangling", "-> nowhere"},
                              {"file", "-> " + (m_root / "outside" / "file").string()},
                              {"folder", "-> " + (m_root / "outside").string()},
                              {"loop", "-> " + m_old.string()},
                          })
    );
    EXPECT_TRUE(move(m_new / "dangling", m_root / "dangling"));
    EXPECT_TRUE(fs::is_symlink(m_root / "dangling"));
}

TEST_F(TreeMoveTest, WritesThroughNoLinkOfTheDestination) {
    write(m_root / "outside" / "file", "outside");
    write(m_old / "file", "bytes");
    fs::create_directories(m_new);
    fs::create_symlink(m_root / "outside" / "file", m_new / "file");
    // Nor through one with the name of the copy in progress.
    fs::create_symlink(
        m_root / "outside" / "file", m_new / (".raincast-" + std::to_string(getpid()) + ".part")
    );
    EXPECT_TRUE(move(m_old, m_new));
    EXPECT_EQ(listingOf(m_new), (Listing{{"file", "bytes"}}));
    EXPECT_EQ(listingOf(m_root / "outside"), (Listing{{"file", "outside"}}));

    write(m_old / "BMX" / "file", "bytes");
    fs::create_directory_symlink(m_root / "outside", m_new / "BMX");
    EXPECT_FALSE(move(m_old, m_new)) << "a link is in the way of a folder";
    EXPECT_EQ(listingOf(m_root / "outside"), (Listing{{"file", "outside"}}));
    EXPECT_EQ(bytesOf(m_old / "BMX" / "file"), "bytes");
}

TEST_F(TreeMoveTest, ALinkBackIntoTheSourceLosesNothing) {
    write(m_old / "BMX" / "file", "bytes");
    fs::create_directories(m_new);
    fs::create_directory_symlink(m_old / "BMX", m_new / "BMX");
    EXPECT_FALSE(move(m_old, m_new));
    EXPECT_EQ(bytesOf(m_old / "BMX" / "file"), "bytes");
}

TEST_F(TreeMoveTest, TwoNamesOfOneFileBecomeOne) {
    write(m_old / "file", "bytes");
    fs::create_directories(m_new);
    fs::create_hard_link(m_old / "file", m_new / "file");
    EXPECT_TRUE(move(m_old, m_new));
    EXPECT_EQ(listingOf(m_root), (Listing{{"new", "/"}, {"new/file", "bytes"}}));
}

TEST_F(TreeMoveTest, ALinkedRootGivesItsContentsAndLeadsToAnEmptyFolder) {
    write(m_root / "real" / "file", "bytes");
    fs::create_directory_symlink(m_root / "real", m_old);
    EXPECT_TRUE(move(m_old, m_new));
    EXPECT_EQ(listingOf(m_new), (Listing{{"file", "bytes"}}));
    EXPECT_TRUE(fs::is_directory(m_old));
    EXPECT_TRUE(fs::is_empty(m_old));
    EXPECT_TRUE(move(m_new, m_old)) << "and takes them again";
    EXPECT_EQ(listingOf(m_root / "real"), (Listing{{"file", "bytes"}}));
}

TEST_F(TreeMoveTest, WhatIsNoFileCannotBeMoved) {
    write(m_old / "a");
    fs::create_directories(m_old);
    ASSERT_EQ(mkfifo((m_old / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(move(m_old, m_new));
    EXPECT_EQ(listingOf(m_old), (Listing{{"pipe", "special"}}));
    EXPECT_EQ(listingOf(m_new), (Listing{{"a", "x"}}));
    EXPECT_FALSE(move(m_old / "pipe", m_root / "pipe"));
}

TEST_F(TreeMoveTest, AHalfCopyLeavesBothEndsAsTheyWere) {
    const std::string large(300'000, 'z');
    write(m_old / "large", large);
    write(m_new / "large", "there before");
    {
        const FullDisk fullDisk(100'000);
        EXPECT_FALSE(move(m_old, m_new));
    }
    EXPECT_EQ(listingOf(m_old), (Listing{{"large", large}}));
    EXPECT_EQ(listingOf(m_new), (Listing{{"large", "there before"}}));
}

TEST_F(TreeMoveTest, ACopyThatFailsOnlyWhenItIsClosedFails) {
    write(m_old / "small", std::string(1000, 'z'));
    {
        // Less than a buffer: nothing is written before the end.
        const FullDisk fullDisk(500);
        EXPECT_FALSE(move(m_old, m_new));
    }
    EXPECT_EQ(fs::file_size(m_old / "small"), 1000U);
    EXPECT_TRUE(fs::is_empty(m_new));
}

TEST_F(TreeMoveTest, UndoBringsBackWhatWasMoved) {
    const std::string large(300'000, 'z');
    write(m_old / "A" / "file", "a");
    fs::create_symlink("nowhere", m_old / "A" / "link");
    write(m_old / "B" / "C" / "file", "c");
    write(m_old / "D" / "large", large);
    write(m_new / "A" / "before", "b");
    const Listing before = listingOf(m_root);

    int moved = 0;
    TreeMove treeMove([&](int count) { moved = count; });
    {
        const FullDisk fullDisk(100'000);
        EXPECT_FALSE(treeMove.run(m_old, m_new));
    }
    EXPECT_EQ(moved, 3);
    EXPECT_FALSE(fs::exists(m_old / "A"));
    treeMove.undo();
    EXPECT_EQ(listingOf(m_root), before);
}

TEST_F(TreeMoveTest, UndoLeavesAFileWhereOneWasReplaced) {
    write(m_old / "both", "moved");
    write(m_old / "folder", "no folder");
    write(m_new / "both", "there before");
    fs::create_directories(m_new / "folder");
    TreeMove treeMove({});
    EXPECT_FALSE(treeMove.run(m_old, m_new));
    treeMove.undo();
    EXPECT_EQ(listingOf(m_old), (Listing{{"both", "moved"}, {"folder", "no folder"}}));
    EXPECT_EQ(listingOf(m_new), (Listing{{"both", "moved"}, {"folder", "/"}}));
}

TEST_F(TreeMoveTest, UndoLeavesWhatCannotBeBroughtBack) {
    write(m_old / "A" / "file", "a");
    write(m_old / "B" / "file", "b");
    write(m_old / "C", "c");
    fs::create_directories(m_new / "C");
    TreeMove treeMove({});
    EXPECT_FALSE(treeMove.run(m_old, m_new));
    // In the meantime somebody has put a file where a folder was.
    write(m_old / "A", "in the way");
    treeMove.undo();
    EXPECT_EQ(
        listingOf(m_root), (Listing{
                               {"new", "/"},
                               {"new/A", "/"},
                               {"new/A/file", "a"},
                               {"new/C", "/"},
                               {"old", "/"},
                               {"old/A", "in the way"},
                               {"old/B", "/"},
                               {"old/B/file", "b"},
                               {"old/C", "c"},
                           })
    );
}

TEST_F(TreeMoveTest, NamesAreBytes) {
    const std::string odd = "\xFF\xFE not text";
    write(m_old / odd / odd, "bytes");
    EXPECT_TRUE(move(m_old, m_new));
    EXPECT_EQ(bytesOf(m_new / odd / odd), "bytes");
    write(m_old / std::string(255, 'n'), "as long as names may be");
    EXPECT_TRUE(move(m_old, m_new));
}

TEST_F(TreeMoveTest, ManyFilesAndDeepFolders) {
    fs::path deep = m_old;
    for (int level = 0; level < 200; ++level) {
        deep /= "d";
    }
    write(deep / "file", "deep");
    for (int i = 0; i < 1000; ++i) {
        write(m_old / "BMX" / std::to_string(i));
    }
    int moved = 0;
    EXPECT_TRUE(TreeMove([&](int count) { moved = count; }).run(m_old, m_new));
    EXPECT_EQ(moved, 1001);
    EXPECT_FALSE(fs::exists(m_old));
    EXPECT_EQ(bytesOf(m_new / deep.lexically_relative(m_old) / "file"), "deep");
}

} // namespace
} // namespace raincast
