// SPDX-License-Identifier: MIT
#include "core/whole_file.h"
#include "support/files.h"
#include "support/full_disk.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/fsuid.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <thread>

namespace raincast {
namespace {

class WholeFileTest : public testing::Test {
protected:
    [[nodiscard]] QString path(const QString& name = QStringLiteral("a.gif")) const {
        return m_folder.filePath(name);
    }
    [[nodiscard]] std::string files() const { return namesIn(m_folder.path()); }
    static void write(const QString& path, const QByteArray& bytes) {
        const auto written = replaceFile(path, bytes, Lasting::no);
        ASSERT_TRUE(written) << qPrintable(written.error());
    }
    /// Empty when the file was written.
    static QString whyNot(const QString& path, const QByteArray& bytes) {
        const auto written = replaceFile(path, bytes, Lasting::yes);
        return written ? QString() : written.error();
    }
    static mode_t rightsOf(const QString& path) {
        struct stat status {};
        EXPECT_EQ(stat(QFile::encodeName(path).constData(), &status), 0);
        return status.st_mode & 0777;
    }

    QTemporaryDir m_folder;
};

TEST_F(WholeFileTest, CreatesAndReplaces) {
    for (const Lasting lasting : {Lasting::yes, Lasting::no}) {
        EXPECT_TRUE(replaceFile(path(), "a longer one", lasting));
        EXPECT_EQ(readFile(path()), "a longer one");
        EXPECT_TRUE(replaceFile(path(), "another", lasting));
        EXPECT_EQ(readFile(path()), "another");
        EXPECT_TRUE(replaceFile(path(), {}, lasting));
        EXPECT_EQ(readFile(path()), "");
    }
    EXPECT_EQ(files(), "a.gif");
}

TEST_F(WholeFileTest, ANameWithoutAFolderIsOfThisFolder) {
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(m_folder.path()));
    EXPECT_EQ(whyNot("a.gif", "one"), "");
    ASSERT_TRUE(QDir::setCurrent(before));
    EXPECT_EQ(readFile(path()), "one");
}

TEST_F(WholeFileTest, TheNameAppearsWithTheCommit) {
    WholeFile file(Lasting::no);
    ASSERT_TRUE(file.open(path()));
    EXPECT_TRUE(file.write("half"));
    EXPECT_EQ(files(), "a.gif.part");
    EXPECT_TRUE(file.write("half"));
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(files(), "a.gif");
    EXPECT_EQ(readFile(path()), "halfhalf");
}

TEST_F(WholeFileTest, TheOldFileStaysUntilThen) {
    write(path(), "a longer old file");
    {
        WholeFile file(Lasting::yes);
        ASSERT_TRUE(file.open(path()) && file.write("new"));
        EXPECT_EQ(readFile(path()), "a longer old file");
    }
    EXPECT_EQ(readFile(path()), "a longer old file");
    EXPECT_EQ(files(), "a.gif");
}

TEST_F(WholeFileTest, OneObjectWritesSeveralFiles) {
    WholeFile file(Lasting::no);
    ASSERT_TRUE(file.open(path("given up")) && file.write("x"));
    ASSERT_TRUE(file.open(path("a")) && file.write("a") && file.commit());
    EXPECT_FALSE(file.open(path("absent/b")));
    ASSERT_TRUE(file.open(path("b")) && file.commit());
    EXPECT_FALSE(file.write("too late"));
    EXPECT_FALSE(file.commit());
    EXPECT_EQ(files(), "a b");
    EXPECT_EQ(readFile(path("b")), "");
}

TEST_F(WholeFileTest, AKilledProgramsRestIsWrittenOver) {
    writeFile(path() + ".part", "the long rest of an earlier attempt");
    write(path(), "new");
    EXPECT_EQ(readFile(path()), "new");
    EXPECT_EQ(files(), "a.gif");
}

TEST_F(WholeFileTest, WritersOfOneFileDoNotDisturbEachOther) {
    WholeFile first(Lasting::no);
    WholeFile second(Lasting::no);
    WholeFile third(Lasting::no);
    ASSERT_TRUE(first.open(path()) && first.write("fir"));
    ASSERT_TRUE(second.open(path()) && second.write("sec"));
    ASSERT_TRUE(third.open(path()) && third.write("thi"));
    ASSERT_TRUE(first.write("st") && first.commit());
    EXPECT_EQ(readFile(path()), "first");
    ASSERT_TRUE(third.write("rd") && third.commit());
    EXPECT_EQ(readFile(path()), "third");
    ASSERT_TRUE(second.write("ond") && second.commit());
    EXPECT_EQ(readFile(path()), "second");
    EXPECT_EQ(files(), "a.gif");
}

TEST_F(WholeFileTest, ThreadsThatWriteOneFileLeaveOneOfTheirs) {
    const auto work = [&](char letter) {
        for (int i = 0; i < 100; ++i) {
            write(path(), QByteArray(5000, letter));
        }
    };
    {
        const std::jthread one(work, 'a');
        const std::jthread other(work, 'b');
        work('c');
    }
    const QByteArray left = readFile(path());
    EXPECT_EQ(left, QByteArray(5000, left.at(0)));
    EXPECT_EQ(files(), "a.gif");
}

TEST_F(WholeFileTest, WhatFailsSaysWhy) {
    EXPECT_EQ(whyNot(path("absent/a.gif"), "x"), qt_error_string(ENOENT));
    EXPECT_EQ(whyNot(QString(), "x"), qt_error_string(ENOENT));
    EXPECT_EQ(files(), "");
    writeFile(path());
    EXPECT_EQ(whyNot(path("a.gif/b"), "x"), qt_error_string(ENOTDIR));
    EXPECT_EQ(whyNot(path(QString(300, u'x')), "x"), qt_error_string(ENAMETOOLONG));
    EXPECT_EQ(files(), "a.gif");
}

TEST_F(WholeFileTest, AFolderAPipeAndADeviceStay) {
    ASSERT_TRUE(QDir(m_folder.path()).mkdir("a.gif"));
    ASSERT_EQ(mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
    ASSERT_TRUE(QFile::link("/dev/null", path("null")));
    EXPECT_EQ(whyNot(path(), "x"), qt_error_string(EISDIR));
    EXPECT_EQ(whyNot(path("pipe"), "x"), "Not a regular file");
    EXPECT_NE(whyNot(path("null"), "x"), "");
    EXPECT_EQ(files(), "a.gif null pipe");
}

TEST_F(WholeFileTest, ALinkUnderTheTemporaryNameIsNotFollowed) {
    write(path("precious"), "precious");
    ASSERT_TRUE(QFile::link(path("precious"), path("a.gif.part")));
    write(path(), "new");
    EXPECT_EQ(readFile(path("precious")), "precious");
    EXPECT_EQ(readFile(path()), "new");
    EXPECT_EQ(files(), "a.gif a.gif.part precious");
}

TEST_F(WholeFileTest, APipeUnderTheTemporaryNameDoesNotHang) {
    ASSERT_EQ(mkfifo(QFile::encodeName(path("a.gif.part")).constData(), 0600), 0);
    write(path(), "new");
    EXPECT_EQ(readFile(path()), "new");
}

TEST_F(WholeFileTest, WhatALinkLeadsToIsReplaced) {
    ASSERT_TRUE(QDir(m_folder.path()).mkdir("card"));
    ASSERT_TRUE(QFile::link(path("second"), path("first")));
    ASSERT_EQ(symlink("card/file", QFile::encodeName(path("second")).constData()), 0);
    // Whether there is anything yet or not.
    for (const char* text : {"one", "another"}) {
        write(path("first"), text);
        EXPECT_EQ(readFile(path("card/file")), text);
        EXPECT_TRUE(QFileInfo(path("first")).isSymLink());
        EXPECT_TRUE(QFileInfo(path("second")).isSymLink());
    }
    EXPECT_EQ(namesIn(path("card")), "file");
}

TEST_F(WholeFileTest, LinksInACircleAreNoFile) {
    ASSERT_TRUE(QFile::link(path("b"), path("a")));
    ASSERT_TRUE(QFile::link(path("a"), path("b")));
    EXPECT_EQ(whyNot(path("a"), "x"), qt_error_string(ELOOP));
    EXPECT_EQ(files(), "a b");
}

TEST_F(WholeFileTest, AFullDiskLeavesTheOldFileAndNothingElse) {
    write(path(), "old");
    const QString full = qt_error_string(EFBIG); // what FullDisk says for "no space left"
    for (const int size : {51, 5000, 100'000}) {
        const FullDisk disk(50);
        EXPECT_EQ(whyNot(path(), QByteArray(size, 'n')), full);
        EXPECT_EQ(whyNot(path("new"), QByteArray(size, 'n')), full);
    }
    EXPECT_EQ(readFile(path()), "old");
    EXPECT_EQ(files(), "a.gif");
}

TEST_F(WholeFileTest, TheFirstFailureStays) {
    WholeFile file(Lasting::no);
    {
        const FullDisk disk(1000);
        ASSERT_TRUE(file.open(path()));
        EXPECT_TRUE(file.write(QByteArray(900, 'x')));
        EXPECT_FALSE(file.write(QByteArray(900, 'x')));
    }
    EXPECT_FALSE(file.write("there is room again, but not for a part of a file"));
    const auto done = file.commit();
    ASSERT_FALSE(done);
    EXPECT_EQ(done.error(), qt_error_string(EFBIG));
    EXPECT_EQ(files(), "");
}

TEST_F(WholeFileTest, TheUsersMaskDecidesWhoMayReadANewFile) {
    const mode_t mask = umask(027);
    write(path(), "x");
    umask(mask);
    EXPECT_EQ(rightsOf(path()), 0640U);
}

TEST_F(WholeFileTest, AReplacedFileKeepsItsRights) {
    writeFile(path());
    for (const mode_t rights : {0600U, 0666U, 0751U}) {
        ASSERT_EQ(chmod(QFile::encodeName(path()).constData(), rights), 0);
        write(path(), "x");
        EXPECT_EQ(rightsOf(path()), rights);
    }
}

/// The thread has no more rights to files than anybody while this lives, though root runs it.
class Unprivileged {
public:
    Unprivileged() : m_before(static_cast<uid_t>(setfsuid(kNobody))) {}
    ~Unprivileged() { setfsuid(m_before); }
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;

private:
    static constexpr uid_t kNobody = 65534;
    uid_t m_before;
};

TEST_F(WholeFileTest, AProtectedFileIsNotReplaced) {
    writeFile(path(), "protected");
    ASSERT_EQ(chmod(QFile::encodeName(path()).constData(), 0444), 0);
    ASSERT_EQ(chmod(QFile::encodeName(m_folder.path()).constData(), 0777), 0);
    const Unprivileged nobody;
    EXPECT_EQ(whyNot(path(), "x"), qt_error_string(EACCES));
    EXPECT_EQ(readFile(path()), "protected");
    EXPECT_EQ(files(), "a.gif");
}

TEST_F(WholeFileTest, AFolderThatMayNotBeWrittenIsTold) {
    writeFile(path("file"));
    ASSERT_EQ(chmod(QFile::encodeName(m_folder.path()).constData(), 0555), 0);
    {
        const Unprivileged nobody;
        EXPECT_EQ(whyNot(path(), "x"), qt_error_string(EACCES));
    }
    ASSERT_EQ(chmod(QFile::encodeName(m_folder.path()).constData(), 0700), 0);
    EXPECT_EQ(files(), "file");
}

TEST_F(WholeFileTest, WhatKilledProgramsLeftIsRemovedAfterAnHour) {
    for (const char* name : {"a.gif.part", ".hidden.77-0.part", "a.gif", "part", "fresh.part"}) {
        writeFile(path(name));
        backdate(path(name), 3610);
    }
    backdate(path("fresh.part"), 3590);
    ASSERT_TRUE(QDir(m_folder.path()).mkdir("folder.part"));
    removeAbandonedFiles(m_folder.path());
    EXPECT_EQ(files(), "a.gif folder.part fresh.part part");
    removeAbandonedFiles(path("absent"));
}

class ReadWholeTest : public WholeFileTest {
protected:
    static ReadFailure failure(const QString& path, qint64 mostBytes = 100) {
        const auto bytes = readWhole(path, mostBytes);
        EXPECT_FALSE(bytes) << qPrintable(path);
        return bytes ? ReadFailure{} : bytes.error();
    }
    using Kind = ReadFailure::Kind;
};

TEST_F(ReadWholeTest, GivesTheBytesOfAFile) {
    const QByteArray large(300'000, 'x');
    writeFile(path("large"), large);
    writeFile(path("small"), "12345");
    writeFile(path("empty"), "");
    EXPECT_EQ(readWhole(path("large"), 1'000'000), large);
    EXPECT_EQ(readWhole(path("large"), large.size()), large);
    EXPECT_EQ(readWhole(path("small"), 5), QByteArray("12345"));
    EXPECT_EQ(readWhole(path("empty"), 0), QByteArray());
}

TEST_F(ReadWholeTest, TakesTheMemoryThatTheFileNeeds) {
    writeFile(path(), QByteArray(1600, 'x'));
    const auto bytes = readWhole(path(), qint64{1} << 40);
    ASSERT_TRUE(bytes);
    EXPECT_EQ(bytes->size(), 1600);
    EXPECT_LT(bytes->capacity(), 1700);
}

TEST_F(ReadWholeTest, TooLargeIsTold) {
    writeFile(path(), "123456");
    EXPECT_EQ(failure(path(), 5).kind, Kind::tooLarge);
    EXPECT_EQ(failure(path(), 5).reason, "Larger than 5 bytes");
    // However much it says it has.
    QFile file(path());
    ASSERT_TRUE(file.open(QIODevice::ReadWrite) && file.resize(qint64{1} << 40));
    EXPECT_EQ(failure(path(), 1 << 20).kind, Kind::tooLarge);
}

TEST_F(ReadWholeTest, ATableOfTheSystemIsReadThoughItTellsNoSize) {
    const QString table = "/proc/self/smaps";
    ASSERT_EQ(QFileInfo(table).size(), 0);
    const auto bytes = readWhole(table, 1 << 24);
    ASSERT_TRUE(bytes);
    EXPECT_GT(bytes->size(), 40'000); // more than is read at once
    EXPECT_TRUE(bytes->contains("[stack]"));
    // Read while it grows beyond the limit: no more is taken than that.
    const ReadFailure cut = failure(table, 20'000);
    EXPECT_EQ(cut.kind, Kind::tooLarge);
}

TEST_F(ReadWholeTest, WhatGrowsStaysWithinTheLimit) {
    const auto bytes = readWhole("/proc/self/smaps", 1 << 24);
    ASSERT_TRUE(bytes);
    const qint64 most = bytes->size() + 30'000;
    const auto again = readWhole("/proc/self/smaps", most);
    ASSERT_TRUE(again);
    EXPECT_LE(again->capacity(), most + 64);
}

TEST_F(ReadWholeTest, AbsentIsNoFailureToRead) {
    EXPECT_EQ(failure(path("absent")).kind, Kind::absent);
    EXPECT_EQ(failure(path("absent/a")).kind, Kind::absent);
    EXPECT_EQ(failure(QString()).kind, Kind::absent);
    writeFile(path());
    EXPECT_EQ(failure(path("a.gif/a")).kind, Kind::absent);
    ASSERT_TRUE(QFile::link(path("nothing"), path("link")));
    EXPECT_EQ(failure(path("link")).kind, Kind::absent);
}

TEST_F(ReadWholeTest, WhatIsNoFileIsNeitherWaitedForNorRead) {
    ASSERT_EQ(mkfifo(QFile::encodeName(path("pipe")).constData(), 0600), 0);
    EXPECT_EQ(failure(path("pipe")).kind, Kind::unreadable);
    EXPECT_EQ(failure(path("pipe")).reason, "Not a regular file");
    EXPECT_EQ(failure("/dev/zero").kind, Kind::unreadable);
    EXPECT_EQ(failure(m_folder.path()).kind, Kind::unreadable);
    EXPECT_EQ(failure(m_folder.path()).reason, qt_error_string(EISDIR));
}

TEST_F(ReadWholeTest, AFileThatMayNotBeReadIsTold) {
    writeFile(path());
    ASSERT_EQ(chmod(QFile::encodeName(path()).constData(), 0), 0);
    ASSERT_EQ(chmod(QFile::encodeName(m_folder.path()).constData(), 0755), 0);
    const Unprivileged nobody;
    EXPECT_EQ(failure(path()).kind, Kind::unreadable);
    EXPECT_EQ(failure(path()).reason, qt_error_string(EACCES));
}

TEST_F(ReadWholeTest, AnErrorOfTheDiskIsTold) {
    // The first page of a process's memory cannot be read: EIO.
    const ReadFailure broken = failure("/proc/self/mem");
    EXPECT_EQ(broken.kind, Kind::unreadable);
    EXPECT_EQ(broken.reason, qt_error_string(EIO));
}

} // namespace
} // namespace raincast
