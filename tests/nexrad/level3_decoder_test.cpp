// SPDX-License-Identifier: MIT
#include "image/image_file.h"
#include "nexrad/frame_painter.h"
#include "nexrad/level3_decoder.h"
#include "radar/bitmap.h"
#include "support/level3_maker.h"

#include <QFile>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace raincast {
namespace {

using Picture = Level3ToMake::Picture;
using Cells = std::vector<std::uint8_t>;

PolarScan decoded(const Level3ToMake& product) {
    const Level3Result result = decodeLevel3(makeLevel3(product));
    EXPECT_TRUE(result.has_value());
    return result.value_or(PolarScan());
}

std::string errorOf(const Level3ToMake& product) {
    const Level3Result result = decodeLevel3(makeLevel3(product));
    EXPECT_FALSE(result.has_value());
    return result ? std::string() : result.error().toStdString();
}

QImage rendered(const PolarScan& scan, Product as) {
    return decodeImage(renderFrame(scan, as).value(), kMostImagePixels);
}

bool isEmpty(const QImage& picture) {
    for (int row = 0; row < picture.height(); ++row) {
        for (int column = 0; column < picture.width(); ++column) {
            if (picture.pixel(column, row) != kTransparentWhite) {
                return false;
            }
        }
    }
    return !picture.isNull();
}

TEST(Level3DecoderTest, ARadialPictureBecomesAScan) {
    const PolarScan scan = decoded({});
    EXPECT_EQ(scan.site, "TLX");
    EXPECT_EQ(scan.product, Product::baseReflectivity);
    EXPECT_EQ(scan.code, 19);
    EXPECT_EQ(scan.time, fromCalendar({2013, 5, 20, 20, 16, 43}));
    EXPECT_EQ(scan.layout, CellLayout::polar);
    EXPECT_EQ(scan.rows, 4);
    EXPECT_EQ(scan.columns, 4);
    EXPECT_EQ(scan.cells, (Cells{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}));
    ASSERT_EQ(scan.radials.size(), 4U);
    EXPECT_EQ(scan.radials[3].startTenths, 2700);
    EXPECT_EQ(scan.radials[3].widthTenths, 900);
    EXPECT_DOUBLE_EQ(scan.firstKm, 0);
    EXPECT_NEAR(scan.cellKm, .99996, .00001);
    EXPECT_FALSE(scan.sample);
}

TEST(Level3DecoderTest, LongRunsAreTakenApart) {
    const Cells cells(230, 7);
    const PolarScan scan = decoded({.rows = {{0, 10, cells}, {10, 10, Cells(230, 0)}}});
    EXPECT_EQ(Cells(scan.cells.begin(), scan.cells.begin() + 230), cells);
    EXPECT_EQ(scan.columns, 230);
}

TEST(Level3DecoderTest, ADigitalPictureHasAByteACell) {
    const PolarScan scan = decoded(
        {.code = 94,
         .thresholds = digitalThresholds(-320, 5),
         .picture = Picture::digital,
         .firstBin = 3,
         .rows = {{0, 1800, {0, 1, 200}}, {1800, 1800, {255, 2, 76}}},
         .packed = true}
    );
    EXPECT_EQ(scan.cells, (Cells{0, 1, 200, 255, 2, 76}));
    EXPECT_NEAR(scan.firstKm, 3, .001);
    EXPECT_FLOAT_EQ(scan.values[76], 5);
}

TEST(Level3DecoderTest, ARasterHasSquareCells) {
    const PolarScan scan =
        decoded({.code = 37, .picture = Picture::raster, .rows = {{0, 0, {1, 2}}, {0, 0, {3, 4}}}});
    EXPECT_EQ(scan.layout, CellLayout::raster);
    EXPECT_EQ(scan.product, Product::compositeReflectivity);
    EXPECT_EQ(scan.rows, 2);
    EXPECT_EQ(scan.columns, 2);
    EXPECT_EQ(scan.cells, (Cells{1, 2, 3, 4}));
    EXPECT_DOUBLE_EQ(scan.cellKm, 1);
}

TEST(Level3DecoderTest, AllWrappingsHoldTheSameScan) {
    Level3ToMake product;
    product.packed = true;
    const PolarScan plain = decoded({});
    for (const int frames : {0, 1, 2}) {
        product.zlibFrames = frames;
        product.startOfHeading = frames == 1;
        EXPECT_EQ(decoded(product).cells, plain.cells);
        EXPECT_EQ(decoded(product).site, "TLX");
    }
}

TEST(Level3DecoderTest, WithoutAHeadingThePlaceTellsTheSite) {
    EXPECT_EQ(decoded({.wmoHeading = "", .awipsId = ""}).site, "TLX");
    EXPECT_EQ(decoded({.latitude = 0, .wmoHeading = "", .awipsId = ""}).site, "");
}

TEST(Level3DecoderTest, AProductOfTextAloneIsAScanWithoutCellsAndANote) {
    const PolarScan scan = decoded(
        {.code = 172,
         .thresholds = accumulationThresholds(1, 0),
         .picture = Picture::none,
         .text = "No precipitation detected since 5/7/2021 22:28 Z.  ",
         .packed = true}
    );
    EXPECT_EQ(scan.rows, 0);
    EXPECT_EQ(scan.note, "No precipitation detected since 5/7/2021 22:28 Z.");
    EXPECT_TRUE(isEmpty(rendered(scan, Product::totalPrecipitation)));
}

TEST(Level3DecoderTest, TextBeforeAPictureDoesNotHideIt) {
    const PolarScan scan = decoded({.text = "Some words"});
    EXPECT_EQ(scan.rows, 4);
    EXPECT_EQ(scan.note, "Some words");
}

TEST(Level3DecoderTest, CodesStandForTheirProducts) {
    const auto publishedFor = [](int code, double elevation) {
        PolarScan scan;
        scan.code = code;
        scan.elevationDegrees = elevation;
        return publishedAs(scan);
    };
    using P = Product;
    using Products = std::vector<Product>;
    EXPECT_EQ(publishedFor(19, .5), (Products{P::baseReflectivity}));
    EXPECT_EQ(publishedFor(94, .5), (Products{P::baseReflectivity, P::longRangeReflectivity}));
    EXPECT_EQ(publishedFor(153, .5), (Products{P::baseReflectivity, P::longRangeReflectivity}));
    EXPECT_EQ(publishedFor(20, .5), (Products{P::longRangeReflectivity}));
    EXPECT_EQ(publishedFor(37, 0), (Products{P::compositeReflectivity}));
    EXPECT_EQ(publishedFor(27, .5), (Products{P::velocity}));
    EXPECT_EQ(publishedFor(154, .2), (Products{P::velocity}));
    EXPECT_EQ(publishedFor(56, .5), (Products{P::stormRelativeVelocity}));
    EXPECT_EQ(publishedFor(170, 0), (Products{P::oneHourPrecipitation}));
    EXPECT_EQ(publishedFor(80, 0), (Products{P::totalPrecipitation}));
    EXPECT_EQ(publishedFor(19, 1.5), Products());
    EXPECT_EQ(publishedFor(99, .9), Products());
    EXPECT_EQ(publishedFor(0, 0), Products());
}

TEST(Level3DecoderTest, WhatCannotBeRenderedIsSaid) {
    EXPECT_EQ(
        errorOf({.code = 165}),
        "the product code at byte 60 is 165, which cannot be rendered (those that can: 19, 20, 27, "
        "37, 56, 78, 80, 94, 99, 153, 154, 170, 172)"
    );
}

TEST(Level3DecoderTest, DamageIsNamedWithFieldOffsetAndWhatWasFound) {
    EXPECT_EQ(
        errorOf({.rows = {{0, 1800, {1, 2, 3}}, {1800, 1800, {1, 2}}}}),
        "radial 2 at byte 196 is 2 cells long instead of 3"
    );
    EXPECT_EQ(
        errorOf({.rows = {{3601, 10, {1}}}}),
        "a radial's start angle at byte 182 is 3601, not 0 to 3600"
    );
    EXPECT_EQ(errorOf({.rows = {{0, 0, {1}}}}), "a radial's width at byte 184 is 0, not 1 to 3600");
    EXPECT_EQ(
        errorOf({.firstBin = 2001}), "the index of the first bin at byte 168 is 2001, not 0 to 2000"
    );
    EXPECT_EQ(
        errorOf({.rows = std::vector<Level3ToMake::Row>(801, {0, 10, {1}})}),
        "the number of radials at byte 178 is 801, not 1 to 800"
    );
    EXPECT_EQ(
        errorOf(
            {.code = 94,
             .thresholds = digitalThresholds(-320, 5),
             .picture = Picture::digital,
             .rows = {{0, 1800, {1, 2, 3}}, {1800, 1800, {1}}},
             .packed = true}
        ),
        "radial 2 at byte 165 of the unpacked product is 1 cells long instead of 3"
    );
}

TEST(Level3DecoderTest, DamagedBzip2IsSaid) {
    Level3ToMake product;
    product.packed = true;
    std::string file = makeLevel3(product);
    file.resize(file.size() - 10);
    EXPECT_EQ(
        decodeLevel3(file).error(),
        "the bzip2 data at byte 150 are damaged, cut off or hold more than 8 MiB"
    );
}

/// Whether a scan's parts fit each other, so that it may be drawn.
bool isSound(const PolarScan& scan) {
    const bool polar = scan.layout == CellLayout::polar;
    return scan.rows >= 0 && scan.columns >= 0 &&
           scan.cells.size() ==
               static_cast<std::size_t>(scan.rows) * static_cast<std::size_t>(scan.columns) &&
           (!polar || scan.radials.size() == static_cast<std::size_t>(scan.rows)) &&
           std::all_of(
               scan.radials.begin(), scan.radials.end(),
               [](RadialSpan radial) {
                   return radial.startTenths >= 0 && radial.startTenths < 3600 &&
                          radial.widthTenths > 0;
               }
           ) &&
           (scan.rows == 0 || scan.cellKm > 0) && std::abs(scan.latitude) <= 90 &&
           std::abs(scan.longitude) <= 180 &&
           std::all_of(scan.levels.begin(), scan.levels.end(), [](auto level) {
               return level < 16;
           });
}

TEST(Level3DecoderTest, EveryCutIsNoticedAndWhateverAChangedByteGivesIsSound) {
    for (const bool packed : {false, true}) {
        Level3ToMake product;
        product.packed = packed;
        product.text = "Words";
        const std::string file = makeLevel3(product);
        for (std::size_t size = 0; size < file.size(); ++size) {
            const Level3Result result = decodeLevel3(file.substr(0, size));
            ASSERT_FALSE(result.has_value()) << size;
            EXPECT_NE(result.error(), "") << size;
            std::string changed = file;
            changed[size] ^= 0x55;
            const Level3Result other = decodeLevel3(changed);
            EXPECT_TRUE(other ? isSound(*other) : !other.error().isEmpty()) << size;
        }
    }
}

/// A pixel of a rendered product and its colour.
struct Pixel {
    int column;
    int row;
    QRgb colour;
};

struct RealProduct {
    const char* file;
    int code;
    std::vector<Pixel> pixels;
};

// Found by another program in another language: geodesics by Vincenty's formulas, its own decoding,
// pixels whose neighbourhood of 0.15 degrees and 200 metres has one colour.
// clang-format off
const RealProduct kRealProducts[] = {
    {"AMX_DAA_2026_07_10_04_57_17", 170, {{86, 369, 0xFFFFFF}, {359, 467, 0xAAAAAA}, {173, 421, 0x767676}, {139, 447, 0x00FFFF}, {117, 427, 0x00AFAF}}},
    {"EWX_N0B_2026_04_19_01_06_38", 153, {{102, 246, 0xFFFFFF}, {190, 317, 0x04E9E7}, {586, 341, 0x019FF4}, {352, 13, 0x0300F4}, {457, 30, 0x02FD02}, {400, 187, 0x01C501}, {489, 107, 0x008E00}}},
    {"KOUN_SDUS34_N1PTLX_201305202016", 78, {{367, 188, 0xFFFFFF}, {220, 339, 0xAAAAAA}, {252, 329, 0x767676}, {281, 234, 0x00FFFF}, {257, 340, 0x00FF00}, {278, 267, 0x008F00}, {272, 265, 0xAF327D}}},
    {"KOUN_SDUS54_N0QTLX_201305202016", 94, {{393, 291, 0xFFFFFF}, {284, 308, 0x04E9E7}, {562, 8, 0x0300F4}, {332, 251, 0x02FD02}, {424, 160, 0x008E00}, {503, 9, 0xFDF802}, {264, 347, 0xFD0000}}},
    {"KOUN_SDUS54_N0RTLX_201305202016", 19, {{342, 300, 0xFFFFFF}, {224, 387, 0x04E9E7}, {177, 438, 0x0300F4}, {296, 289, 0x02FD02}, {449, 83, 0x01C501}, {311, 206, 0xE5BC00}, {247, 335, 0xFD8B00}}},
    {"KOUN_SDUS54_N0STLX_201305200301", 56, {{29, 254, 0xFFFFFF}, {329, 369, 0x320096}, {307, 393, 0x00FB90}, {212, 315, 0x767676}, {219, 301, 0xF88700}, {136, 266, 0xFFFF00}, {351, 117, 0x77007D}}},
    {"KOUN_SDUS54_N0UTLX_201305200301", 99, {{381, 472, 0xFFFFFF}, {349, 333, 0x320096}, {193, 368, 0x00FB90}, {175, 349, 0x00BB00}, {343, 280, 0x008F00}, {153, 204, 0xCDC09F}, {338, 124, 0x77007D}}},
    {"KOUN_SDUS54_N0VTLX_201305200301", 27, {{423, 413, 0xFFFFFF}, {282, 362, 0x0080FF}, {187, 359, 0x00FB90}, {196, 223, 0xCDC09F}, {301, 256, 0xFFFF00}, {286, 249, 0xAE0000}, {355, 177, 0x77007D}}},
    {"KOUN_SDUS54_NCRTLX_201305202016", 37, {{44, 251, 0xFFFFFF}, {396, 129, 0x04E9E7}, {265, 437, 0x0300F4}, {340, 284, 0x02FD02}, {269, 256, 0xFDF802}, {342, 195, 0xE5BC00}, {180, 407, 0xFD0000}}},
    {"KOUN_SDUS54_NTPTLX_201305202016", 80, {{500, 408, 0xFFFFFF}, {137, 437, 0xAAAAAA}, {186, 403, 0x767676}, {156, 433, 0x00FFFF}, {240, 341, 0x00AFAF}, {232, 348, 0x00FF00}, {240, 353, 0x008F00}}},
    {"KOUN_SDUS74_N0ZTLX_201305202016", 20, {{305, 353, 0xFFFFFF}, {352, 220, 0x04E9E7}, {271, 267, 0x019FF4}, {415, 144, 0x02FD02}, {412, 123, 0x01C501}, {212, 377, 0x008E00}, {368, 163, 0xE5BC00}}},
    {"KOUN_SDUS84_DAATLX_201305202016", 170, {{107, 242, 0xFFFFFF}, {342, 193, 0xAAAAAA}, {253, 331, 0x767676}, {265, 265, 0x00FFFF}, {205, 417, 0x00AFAF}, {194, 408, 0x00FF00}, {165, 426, 0x008F00}}},
    {"KOUN_SDUS84_DTATLX_201305202016", 172, {{468, 225, 0xFFFFFF}, {309, 252, 0xAAAAAA}, {400, 93, 0x767676}, {269, 245, 0x00FFFF}, {162, 424, 0x00AFAF}, {178, 421, 0x00FF00}, {171, 419, 0x008F00}}},
    {"LSX_N0G_2022_03_30_15_40_41", 154, {{451, 444, 0xFFFFFF}, {284, 382, 0x0080FF}, {105, 379, 0x320096}, {302, 287, 0x008F00}, {270, 241, 0xCDC09F}, {281, 220, 0x767676}, {166, 374, 0x77007D}}},
};
// clang-format on

QByteArray realProduct(const char* name) {
    QFile file(qEnvironmentVariable("RAINCAST_TEST_DATA") + "/level3/" + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Level3Result realScan(const char* name) {
    return decodeLevel3(realProduct(name));
}

TEST(RealDataLevel3DecoderTest, PixelsHaveTheColoursOfTheirBins) {
    if (realProduct(kRealProducts[0].file).isEmpty()) {
        GTEST_SKIP() << "RAINCAST_TEST_DATA names no folder with level3";
    }
    for (const RealProduct& product : kRealProducts) {
        const auto scan = realScan(product.file);
        ASSERT_TRUE(scan.has_value()) << product.file;
        EXPECT_EQ(scan->code, product.code);
        const QImage image = rendered(*scan, scan->product);
        for (const Pixel& pixel : product.pixels) {
            EXPECT_EQ(image.pixel(pixel.column, pixel.row), pixel.colour | 0xFF000000)
                << product.file << ' ' << pixel.column << ' ' << pixel.row;
        }
    }
}

/// A product with 256 levels and one with 16 of the same scan, whose cells are `ratio` times as
/// long.
void expectSameLevels(const PolarScan& fine, const PolarScan& coarse, int ratio) {
    ASSERT_EQ(fine.rows, coarse.rows);
    for (int row = 0; row < coarse.rows; ++row) {
        ASSERT_EQ(
            fine.radials[static_cast<std::size_t>(row)].startTenths / 10,
            coarse.radials[static_cast<std::size_t>(row)].startTenths / 10
        );
        for (int column = 0; column < coarse.columns; ++column) {
            ASSERT_EQ(
                fine.levels[fine.cell(row, column * ratio)], coarse.levels[coarse.cell(row, column)]
            ) << row
              << ' ' << column;
        }
    }
}

TEST(RealDataLevel3DecoderTest, DigitalProductsGetTheLevelsOfTheirTwinsWithSixteen) {
    const auto n0q = realScan("KOUN_SDUS54_N0QTLX_201305202016");
    const auto n0r = realScan("KOUN_SDUS54_N0RTLX_201305202016");
    const auto n0u = realScan("KOUN_SDUS54_N0UTLX_201305200301");
    const auto n0v = realScan("KOUN_SDUS54_N0VTLX_201305200301");
    if (!n0q || !n0r || !n0u || !n0v) {
        GTEST_SKIP() << "RAINCAST_TEST_DATA names no folder with level3";
    }
    expectSameLevels(*n0q, *n0r, 1);
    expectSameLevels(*n0u, *n0v, 4);
}

TEST(RealDataLevel3DecoderTest, ANullProductShowsNothingAndSaysWhy) {
    const auto scan = realScan("LOT_DTA_2021_05_08_03_47_25");
    if (!scan) {
        GTEST_SKIP() << "RAINCAST_TEST_DATA names no folder with level3";
    }
    EXPECT_EQ(scan->note, "No precipitation detected since 5/7/2021 22:28 Z.");
    EXPECT_TRUE(isEmpty(rendered(*scan, scan->product)));
}

} // namespace
} // namespace raincast
