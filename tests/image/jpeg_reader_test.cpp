// SPDX-License-Identifier: MIT
#include "image/jpeg_reader.h"
#include "radar/bitmap.h"

#include <QImage>

#include <gtest/gtest.h>
#include <jpeglib.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace raincast {
namespace {

constexpr int kWidth = 61; // no multiple of the blocks
constexpr int kHeight = 43;

struct Kind {
    const char* name;
    J_COLOR_SPACE given;
    J_COLOR_SPACE kept;
    int parts; ///< of a pixel
    bool progressive;
};

/// A picture of gentle and of hard changes.
QByteArray makeJpeg(const Kind& kind) {
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* made = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&info, &made, &size);
    info.image_width = kWidth;
    info.image_height = kHeight;
    info.input_components = kind.parts;
    info.in_color_space = kind.given;
    jpeg_set_defaults(&info);
    jpeg_set_colorspace(&info, kind.kept);
    if (kind.progressive) {
        jpeg_simple_progression(&info);
    }
    jpeg_start_compress(&info, TRUE);
    std::vector<JSAMPLE> row(static_cast<std::size_t>(kWidth * kind.parts));
    while (info.next_scanline < info.image_height) {
        for (std::size_t i = 0; i < row.size(); ++i) {
            row[i] = static_cast<JSAMPLE>((i * 7 + info.next_scanline * 11) ^ (i / 3));
        }
        JSAMPROW rows = row.data();
        jpeg_write_scanlines(&info, &rows, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    QByteArray bytes(reinterpret_cast<const char*>(made), static_cast<qsizetype>(size));
    std::free(made);
    return bytes;
}

QByteArray colours() {
    return makeJpeg({"", JCS_RGB, JCS_YCbCr, 3, false});
}

PlainPicture read(const QByteArray& bytes) {
    return readJpeg(bytes, kMostImagePixels);
}

/// Where the height stands, and behind it the width.
qsizetype sizeAt(const QByteArray& bytes) {
    return bytes.indexOf(QByteArray::fromHex("FFC0")) + 5;
}

TEST(JpegReaderTest, HasThePixelsThatQtsOwnReaderHas) {
    const Kind kinds[] = {
        {"colours", JCS_RGB, JCS_YCbCr, 3, false},
        {"colours in many scans", JCS_RGB, JCS_YCbCr, 3, true},
        {"colours as they are", JCS_RGB, JCS_RGB, 3, false},
        {"grey", JCS_GRAYSCALE, JCS_GRAYSCALE, 1, false},
        {"grey in many scans", JCS_GRAYSCALE, JCS_GRAYSCALE, 1, true},
        {"inks", JCS_CMYK, JCS_CMYK, 4, false},
        {"inks that were turned into others", JCS_CMYK, JCS_YCCK, 4, true},
    };
    for (const Kind& kind : kinds) {
        const QByteArray bytes = makeJpeg(kind);
        const QImage expected =
            QImage::fromData(bytes, "JPG").convertToFormat(QImage::Format_RGB32);
        ASSERT_EQ(expected.size(), QSize(kWidth, kHeight)) << kind.name;
        const PlainPicture picture = read(bytes);
        ASSERT_EQ(picture.size(), expected.size()) << kind.name;
        ASSERT_FALSE(picture.isIndexed()) << kind.name;
        for (int row = 0; row < kHeight; ++row) {
            const auto* const pixels = reinterpret_cast<const quint32*>(picture.row(row));
            const auto* const wanted =
                reinterpret_cast<const quint32*>(expected.constScanLine(row));
            ASSERT_TRUE(std::equal(pixels, pixels + kWidth, wanted)) << kind.name << ' ' << row;
        }
    }
}

TEST(JpegReaderTest, OtherPartsOfColourAreADefect) {
    EXPECT_TRUE(read(makeJpeg({"", JCS_UNKNOWN, JCS_UNKNOWN, 2, false})).isNull());
}

TEST(JpegReaderTest, ClaimsBeyondTheLimitFailBeforeTheyAreDecoded) {
    QByteArray bytes = colours();
    EXPECT_FALSE(readJpeg(bytes, kWidth * kHeight).isNull());
    EXPECT_TRUE(readJpeg(bytes, kWidth * kHeight - 1).isNull());
    bytes.replace(sizeAt(bytes), 4, QByteArray::fromHex("FFDCFFDC"));
    EXPECT_TRUE(read(bytes).isNull());
    bytes.replace(sizeAt(bytes), 4, QByteArray::fromHex("00000000"));
    EXPECT_TRUE(read(bytes).isNull());
}

TEST(JpegReaderTest, AFaultAtAnyPlaceEndsTheReadingAndNothingElse) {
    const QByteArray whole = colours();
    ASSERT_FALSE(read(whole).isNull());
    int defective = 0;
    for (qsizetype i = 0; i < whole.size(); ++i) {
        for (const int bit : {0, 3, 7}) {
            QByteArray bytes = whole;
            bytes[i] = static_cast<char>(bytes[i] ^ (1 << bit));
            defective += read(bytes).isNull() ? 1 : 0;
        }
        EXPECT_TRUE(read(whole.first(i)).isNull()) << "cut after " << i << " bytes";
    }
    EXPECT_GT(defective, 100) << "or faults were not tried";
}

TEST(JpegReaderTest, APictureThatIsFollowedByAScanOfItsOwnIsADefect) {
    // A second scan of all parts, which only a progressive picture may have.
    const QByteArray whole = colours();
    const qsizetype scan = whole.indexOf(QByteArray::fromHex("FFDA"));
    ASSERT_GT(scan, 0);
    const QByteArray twice = whole.chopped(2) + whole.mid(scan);
    EXPECT_TRUE(read(twice).isNull());
    EXPECT_TRUE(QImage::fromData(twice, "JPG").isNull());
}

} // namespace
} // namespace raincast
