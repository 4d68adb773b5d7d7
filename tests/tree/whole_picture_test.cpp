// SPDX-License-Identifier: MIT
#include "fake_frames.h"
#include "nexrad/frame_painter.h"
#include "support/files.h"
#include "support/gif_maker.h"
#include "tree/whole_picture.h"

#include <QBuffer>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

int colourOf(int column, int row) {
    return (column * row + column) % 4;
}

/// Pictures of all forms.
QByteArrayList pictures() {
    const auto pixel = colourOf;
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    EXPECT_TRUE(buffer.open(QIODevice::WriteOnly));
    EXPECT_TRUE(QImage(60, 40, QImage::Format_RGB32).save(&buffer, "JPEG"));
    return {
        makeGif({.screen = {60, 55}, .pixel = pixel}),
        makeGif({.screen = {60, 55}, .transparent = 0, .interlaced = true, .pixel = pixel}),
        makeGif({.screen = {60, 55}, .localColours = true, .images = 3, .pixel = pixel}),
        emptyFrame().value(),
        gifThatSays("a comment"),
        jpeg,
    };
}

TEST(WholePictureTest, PicturesAreWholeWithAllTheirBytesOnly) {
    for (const QByteArray& picture : pictures()) {
        EXPECT_TRUE(isWholePicture(picture)) << picture.size();
        for (qsizetype size = 0; size < picture.size(); ++size) {
            ASSERT_FALSE(isWholePicture(picture.first(size))) << size << " of " << picture.size();
        }
        EXPECT_FALSE(isWholePicture(picture + '\0'));
    }
}

TEST(WholePictureTest, BytesOfAnotherFileAreNone) {
    for (const char* bytes : {"", "GIF8", "text", "GIF89a;", ";", "\xFF\xD8\xFF\xD9;"}) {
        EXPECT_FALSE(isWholePicture(bytes)) << bytes;
    }
    // What a power cut can leave: the right length, and nothing in it.
    EXPECT_FALSE(isWholePicture(QByteArray(5000, '\0')));
}

TEST(WholePictureTest, AnyByteMayBeAnything) {
    const QByteArray whole = makeGif({.screen = {8, 8}, .localColours = true, .pixel = colourOf});
    int stillWhole = 0;
    for (qsizetype at = 0; at < whole.size(); ++at) {
        for (int value = 0; value < 256; ++value) {
            QByteArray bytes = whole;
            bytes[at] = static_cast<char>(value);
            stillWhole += isWholePicture(bytes) ? 1 : 0;
        }
    }
    // Most bytes are colours and data, in which anything may stand; the others are the frame.
    EXPECT_GT(stillWhole, whole.size());
    EXPECT_LT(stillWhole, 256 * whole.size());
}

TEST(WholePictureTest, AStoredOneIsReadWhenItIsWhole) {
    const QTemporaryDir folder;
    const QString path = folder.filePath("a");
    EXPECT_EQ(wholePictureIn(path), std::nullopt);
    EXPECT_EQ(wholePictureIn(folder.path()), std::nullopt);
    const QByteArray gif = gifThatSays("stored");
    writeFile(path, gif);
    EXPECT_EQ(wholePictureIn(path), gif);
    writeFile(path, gif.chopped(1));
    EXPECT_EQ(wholePictureIn(path), std::nullopt);
}

} // namespace
} // namespace raincast
