// SPDX-License-Identifier: MIT
#include "image/image_file.h"
#include "radar/catalogue/image_geometry.h"
#include "server/render_command.h"
#include "support/files.h"
#include "support/full_disk.h"
#include "support/level3_maker.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <sstream>

namespace raincast {
namespace {

class RenderCommandTest : public ::testing::Test {
protected:
    std::string path(const char* name) const {
        return m_folder.filePath(QString::fromUtf8(name)).toStdString();
    }
    void write(const char* name, const std::string& bytes) const {
        QFile file(QString::fromStdString(path(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes.data(), static_cast<qint64>(bytes.size()));
    }
    QByteArray read(const char* name) const {
        QFile file(QString::fromStdString(path(name)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    int render(const char* in, const char* out, int detail = 1) {
        m_out.str("");
        m_err.str("");
        return renderCommand(path(in), path(out), detail, m_out, m_err);
    }

    QTemporaryDir m_folder;
    std::ostringstream m_out;
    std::ostringstream m_err;
};

TEST_F(RenderCommandTest, APictureItsWorldFileAndOneLine) {
    write("product", makeLevel3({}));
    EXPECT_EQ(render("product", "out.gif"), 0);
    EXPECT_EQ(m_out.str(), "TLX N0R 2013-05-20 20:16 UTC, code 19\n");
    EXPECT_EQ(m_err.str(), "");
    EXPECT_EQ(decodeImage(read("out.gif")).size(), QSize(600, 550));
    EXPECT_EQ(
        read("out.gfw").toStdString(), ImageGeometry(35.32, -97.27, Range::shortRange).worldFile()
    );
}

TEST_F(RenderCommandTest, ASharpPictureLiesInTheSamePlace) {
    write("product", makeLevel3({}));
    EXPECT_EQ(render("product", "out.gif", 4), 0);
    EXPECT_EQ(decodeImage(read("out.gif")).size(), QSize(2400, 2200));
    // World files name the centre of the first pixel.
    const ImageGeometry small(35.32, -97.27, Range::shortRange);
    const QList<QByteArray> lines = read("out.gfw").split('\n');
    ASSERT_GE(lines.size(), 6);
    EXPECT_NEAR(lines[0].toDouble(), small.degreesPerPixel() / 4, 1e-11);
    EXPECT_NEAR(lines[4].toDouble(), small.longitudeOfColumn(-.375), 1e-11);
    EXPECT_NEAR(lines[5].toDouble(), small.latitudeOfRow(-.375), 1e-11);
}

TEST_F(RenderCommandTest, AProductWithoutAPictureSaysWhy) {
    Level3ToMake product;
    product.picture = Level3ToMake::Picture::none;
    product.text = "Nothing fell.";
    write("product", makeLevel3(product));
    EXPECT_EQ(render("product", "out.gif"), 0);
    EXPECT_EQ(
        m_out.str(), "TLX N0R 2013-05-20 20:16 UTC, code 19, without a picture: Nothing fell.\n"
    );
}

TEST_F(RenderCommandTest, DamageIsOneSentenceAndNothingIsWritten) {
    write("product", makeLevel3({}).substr(0, 100));
    EXPECT_EQ(render("product", "out.gif"), 1);
    EXPECT_EQ(m_out.str(), "");
    EXPECT_EQ(
        m_err.str(),
        path("product") +
            ": the data level thresholds at byte 100 is cut off: 2 bytes are needed, 0 are left.\n"
    );
    EXPECT_FALSE(QFile::exists(QString::fromStdString(path("out.gif"))));
}

TEST_F(RenderCommandTest, FilesThatCannotBeReadOrWrittenAreNamed) {
    EXPECT_EQ(render("missing", "out.gif"), 1);
    EXPECT_EQ(m_err.str().find(path("missing") + ": cannot be read: "), 0U);
    write("product", makeLevel3({}));
    EXPECT_EQ(render("product", "no/such/folder.gif"), 1);
    EXPECT_EQ(m_err.str().find(path("no/such/folder.gif") + ": cannot be written: "), 0U);
}

TEST_F(RenderCommandTest, AFullDiskLeavesTheOldFilesAndSaysWhy) {
    write("product", makeLevel3({}));
    write("out.gif", "old");
    write("out.gfw", "old");
    for (const rlim_t most : {10, 1000}) { // room for nothing, or for the world file alone
        const FullDisk disk(most);
        EXPECT_EQ(render("product", "out.gif"), 1);
        EXPECT_EQ(m_err.str(), path("out.gif") + ": cannot be written: File too large.\n");
        EXPECT_EQ(m_out.str(), "");
    }
    EXPECT_EQ(read("out.gif"), "old");
    EXPECT_EQ(read("out.gfw"), "old");
    EXPECT_EQ(namesIn(m_folder.path()), "out.gfw out.gif product");
}

TEST_F(RenderCommandTest, APictureWithoutItsWorldFileIsNotWritten) {
    write("product", makeLevel3({}));
    ASSERT_TRUE(QDir(m_folder.path()).mkdir("out.gfw"));
    EXPECT_EQ(render("product", "out.gif"), 1);
    EXPECT_EQ(m_err.str(), path("out.gfw") + ": cannot be written: Is a directory.\n");
    EXPECT_EQ(namesIn(m_folder.path()), "out.gfw product");
}

TEST_F(RenderCommandTest, AFileLargerThanAnyProductIsNotRead) {
    QFile file(QString::fromStdString(path("product")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.resize(qint64{1} << 40));
    EXPECT_EQ(render("product", "out.gif"), 1);
    EXPECT_EQ(m_err.str(), path("product") + ": cannot be read: Larger than 16777216 bytes.\n");
}

TEST_F(RenderCommandTest, ANameWithoutASuffixGetsOne) {
    write("product", makeLevel3({}));
    EXPECT_EQ(render("product", "picture"), 0);
    EXPECT_FALSE(read("picture").isEmpty());
    EXPECT_FALSE(read("picture.gfw").isEmpty());
}

} // namespace
} // namespace raincast
