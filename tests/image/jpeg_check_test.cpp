// SPDX-License-Identifier: MIT
#include "image/jpeg_check.h"

#include <QByteArray>

#include <gtest/gtest.h>

namespace raincast {
namespace {

struct Row {
    const char* what;
    const char* hex;
    bool whole;
};

TEST(JpegCheckTest, FindsThePicturesOwnEnd) {
    const Row rows[] = {
        {"nothing", "", false},
        {"start only", "FFD8", false},
        {"start and end", "FFD8 FFD9", true},
        {"a segment, then the end", "FFD8 FFE00004AABB FFD9", true},
        {"a segment, no end", "FFD8 FFE00004AABB", false},
        {"an end inside a segment only", "FFD8 FFE10004FFD9", false},
        {"a segment longer than the file", "FFD8 FFE1FFFF00", false},
        {"a segment's length is cut", "FFD8 FFE100", false},
        {"a scan with a stuffed FF", "FFD8 FFDA0002 1122FF0033 FFD9", true},
        {"a scan with a restart marker", "FFD8 FFDA0002 11FFD022 FFD9", true},
        {"a scan that is cut", "FFD8 FFDA0002 112233", false},
        {"a scan cut in the marker", "FFD8 FFDA0002 112233FF", false},
        {"two scans", "FFD8 FFDA0002 11 FFC4000255 FFDA0002 22 FFD9", false},
        {"two scans, tables between", "FFD8 FFDA0002 11 FFC40003AA FFDA0002 22 FFD9", true},
        {"fill bytes before a marker", "FFD8 FFFFFFD9", true},
        {"fill bytes in a scan", "FFD8 FFDA0002 11 FFFFFFD9", true},
        {"no marker where one must stand", "FFD8 00FFD9", false},
        {"what follows is not looked at", "FFD8 FFD9 00112233", true},
        {"a segment length of 0", "FFD8 FFE00000 FFD9", false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(isSoundJpeg(QByteArray::fromHex(row.hex)), row.whole) << row.what;
    }
}

TEST(JpegCheckTest, RefusesMoreScansThanAnyPictureHas) {
    const QByteArray start = QByteArray::fromHex("FFD8");
    const QByteArray scan = QByteArray::fromHex("FFDA0002 11");
    const QByteArray end = QByteArray::fromHex("FFD9");
    EXPECT_TRUE(isSoundJpeg(start + scan.repeated(kMostJpegScans) + end));
    EXPECT_FALSE(isSoundJpeg(start + scan.repeated(kMostJpegScans + 1) + end));
    EXPECT_FALSE(isSoundJpeg(start + scan.repeated(100'000) + end));
}

} // namespace
} // namespace raincast
