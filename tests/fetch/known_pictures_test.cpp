// SPDX-License-Identifier: MIT
#include "fetch/known_pictures.h"
#include "support/files.h"
#include "support/gif_maker.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace raincast {
namespace {

class KnownPicturesTest : public testing::Test {
protected:
    KnownPicturesTest() { writeFile(m_frame, makeGif({.screen = {600, 550}})); }

    /// A run of the program; what it says of a file.
    enum Answer { none, decoded, known };
    Answer ask(const QString& file) const {
        KnownPictures pictures(m_index);
        const bool isKnown = pictures.isKnown(file);
        const bool isPicture = isKnown || pictures.load(file);
        pictures.save();
        return isKnown ? known : isPicture ? decoded : none;
    }
    /// Writes bytes into the file that is there, and gives it the times of before.
    void overwrite(const QByteArray& bytes) const {
        struct stat before {};
        ASSERT_EQ(stat(m_frame.toLocal8Bit().constData(), &before), 0);
        QFile file(m_frame);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        file.write(bytes);
        file.close();
        // The system's times go on in steps.
        const timespec times[] = {before.st_atim, before.st_mtim};
        struct stat after = before;
        while (after.st_ctim.tv_nsec == before.st_ctim.tv_nsec) {
            ASSERT_EQ(utimensat(AT_FDCWD, m_frame.toLocal8Bit().constData(), times, 0), 0);
            ASSERT_EQ(stat(m_frame.toLocal8Bit().constData(), &after), 0);
        }
    }

    QTemporaryDir m_folder;
    QString m_index = m_folder.filePath("caches/of mine/pictures");
    QString m_frame = m_folder.filePath("a frame.gif");
};

TEST_F(KnownPicturesTest, APictureIsDecodedOnce) {
    EXPECT_EQ(ask(m_frame), decoded);
    EXPECT_EQ(ask(m_frame), known);
    EXPECT_EQ(ask(m_frame), known);
}

TEST_F(KnownPicturesTest, OtherBytesAreDecodedWhateverTheirSizeAndTime) {
    EXPECT_EQ(ask(m_frame), decoded);
    overwrite("no picture");
    EXPECT_EQ(ask(m_frame), none);
    EXPECT_EQ(ask(m_frame), none);
}

TEST_F(KnownPicturesTest, AFileInThePlaceOfAnotherIsDecoded) {
    EXPECT_EQ(ask(m_frame), decoded);
    const QString other = m_folder.filePath("other.gif");
    writeFile(other, makeGif({.screen = {600, 550}}));
    ASSERT_TRUE(QFile::remove(m_frame));
    EXPECT_EQ(ask(m_frame), none);
    ASSERT_TRUE(QFile::rename(other, m_frame));
    EXPECT_EQ(ask(m_frame), decoded);
}

TEST_F(KnownPicturesTest, WhatIsNoPictureIsNeverKnown) {
    const QString other = m_folder.filePath("other.gif");
    writeFile(other, "no picture");
    EXPECT_EQ(ask(other), none);
    EXPECT_EQ(ask(other), none);
    EXPECT_EQ(ask(m_folder.path()), none);
}

TEST_F(KnownPicturesTest, TheIndexForgetsFilesThatAreGone) {
    const QString other = m_folder.filePath("other.gif");
    writeFile(other, makeGif({.screen = {600, 550}}));
    EXPECT_EQ(ask(other), decoded);
    EXPECT_TRUE(readFile(m_index).contains("other.gif"));
    ASSERT_TRUE(QFile::remove(other));
    EXPECT_EQ(ask(m_frame), decoded);
    EXPECT_FALSE(readFile(m_index).contains("other.gif"));
    EXPECT_TRUE(readFile(m_index).contains("a frame.gif"));
}

TEST_F(KnownPicturesTest, AnIndexOfAnotherKindCountsForNothing) {
    EXPECT_EQ(ask(m_frame), decoded);
    const QByteArray good = readFile(m_index);
    for (const QByteArray& bad :
         {QByteArray(), QByteArray("\0\n\n \n", 5), good.mid(1), good.left(good.size() - 3),
          QByteArray(good).replace("pictures 1", "pictures 2")}) {
        writeFile(m_index, bad);
        EXPECT_EQ(ask(m_frame), decoded) << bad.toStdString();
    }
}

TEST_F(KnownPicturesTest, WithoutAnIndexAllIsDecoded) {
    m_index.clear();
    EXPECT_EQ(ask(m_frame), decoded);
    EXPECT_EQ(ask(m_frame), decoded);
}

} // namespace
} // namespace raincast
