// SPDX-License-Identifier: MIT
#include "net/replacing_file.h"
#include "support/files.h"
#include "support/full_disk.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace raincast {
namespace {

class ReplacingFileTest : public testing::Test {
protected:
    [[nodiscard]] QString path(const QString& name = QStringLiteral("a.gif")) const {
        return m_folder.filePath(name);
    }
    [[nodiscard]] std::string files() const { return namesIn(m_folder.path()); }
    static void write(const QString& path, const QByteArray& bytes) {
        ReplacingFile file;
        ASSERT_TRUE(file.open(path) && file.write(bytes) && file.commit());
    }

    QTemporaryDir m_folder;
};

TEST_F(ReplacingFileTest, TheNameAppearsWithTheCommit) {
    ReplacingFile file;
    ASSERT_TRUE(file.open(path()));
    EXPECT_TRUE(file.write("half"));
    EXPECT_EQ(files(), "a.gif.part");
    EXPECT_TRUE(file.write("half"));
    EXPECT_TRUE(file.commit());
    EXPECT_EQ(files(), "a.gif");
    EXPECT_EQ(readFile(path()), "halfhalf");
}

TEST_F(ReplacingFileTest, TheOldFileStaysUntilThen) {
    write(path(), "a longer old file");
    {
        ReplacingFile file;
        ASSERT_TRUE(file.open(path()) && file.write("new"));
        EXPECT_EQ(readFile(path()), "a longer old file");
    }
    EXPECT_EQ(readFile(path()), "a longer old file");
    EXPECT_EQ(files(), "a.gif");
    write(path(), "new");
    EXPECT_EQ(readFile(path()), "new");
}

TEST_F(ReplacingFileTest, OneObjectWritesSeveralFiles) {
    ReplacingFile file;
    ASSERT_TRUE(file.open(path("given up")) && file.write("x"));
    ASSERT_TRUE(file.open(path("a")) && file.write("a") && file.commit());
    ASSERT_TRUE(file.open(path("b")) && file.commit());
    EXPECT_EQ(files(), "a b");
    EXPECT_EQ(readFile(path("b")), "");
}

TEST_F(ReplacingFileTest, AKilledProgramsRestIsWrittenOver) {
    writeFile(path() + ".part", "the long rest of an earlier attempt");
    write(path(), "new");
    EXPECT_EQ(readFile(path()), "new");
    EXPECT_EQ(files(), "a.gif");
}

TEST_F(ReplacingFileTest, TwoWritersDoNotDisturbEachOther) {
    ReplacingFile first;
    ReplacingFile second;
    ReplacingFile third;
    ASSERT_TRUE(first.open(path()) && first.write("fir"));
    ASSERT_TRUE(second.open(path()) && second.write("sec"));
    EXPECT_FALSE(third.open(path())); // one per process is enough: transfers do not overlap
    ASSERT_TRUE(first.write("st") && first.commit());
    EXPECT_EQ(readFile(path()), "first");
    ASSERT_TRUE(second.write("ond") && second.commit());
    EXPECT_EQ(readFile(path()), "second");
    EXPECT_EQ(files(), "a.gif");
}

TEST_F(ReplacingFileTest, NoFolderNoFile) {
    ReplacingFile file;
    EXPECT_FALSE(file.open(path("absent/a.gif")));
    EXPECT_FALSE(file.open(QString()));
    EXPECT_TRUE(files().empty());
}

TEST_F(ReplacingFileTest, AFolderOfThatNameStays) {
    ASSERT_TRUE(QDir(m_folder.path()).mkdir("a.gif"));
    ReplacingFile file;
    ASSERT_TRUE(file.open(path()) && file.write("x"));
    EXPECT_FALSE(file.commit());
    EXPECT_EQ(files(), "a.gif");
}

TEST_F(ReplacingFileTest, ALinkUnderTheTemporaryNameIsNotFollowed) {
    write(path("precious"), "precious");
    ASSERT_TRUE(QFile::link(path("precious"), path("a.gif.part")));
    write(path(), "new");
    EXPECT_EQ(readFile(path("precious")), "precious");
    EXPECT_EQ(readFile(path()), "new");
    EXPECT_EQ(files(), "a.gif a.gif.part precious");
}

TEST_F(ReplacingFileTest, APipeUnderTheTemporaryNameDoesNotHang) {
    ASSERT_EQ(mkfifo(QFile::encodeName(path("a.gif.part")).constData(), 0600), 0);
    write(path(), "new");
    EXPECT_EQ(readFile(path()), "new");
}

TEST_F(ReplacingFileTest, AFullDiskIsReportedAndLeavesNothing) {
    {
        const FullDisk disk(1000);
        ReplacingFile file;
        ASSERT_TRUE(file.open(path()));
        EXPECT_TRUE(file.write(QByteArray(900, 'x')));
        EXPECT_FALSE(file.write(QByteArray(900, 'x')));
    }
    EXPECT_TRUE(files().empty());
}

TEST_F(ReplacingFileTest, TheUsersMaskDecidesWhoMayRead) {
    const mode_t mask = umask(027);
    write(path(), "x");
    umask(mask);
    struct stat status {};
    ASSERT_EQ(stat(QFile::encodeName(path()).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640U);
}

} // namespace
} // namespace raincast
