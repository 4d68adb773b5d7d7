// SPDX-License-Identifier: MIT
#include "geo/geo_reference.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <locale>
#include <string>

namespace raincast {
namespace {

namespace fs = std::filesystem;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// 600 x 550 pixels of a hundredth of a degree, north up; pixel (0, 0) at 41 N, 105 W.
constexpr const char* kPlains = "0.01\n0\n0\n-0.01\n-105.0\n41.0\n";

class GeoReferenceTest : public testing::Test {
protected:
    void SetUp() override {
        std::string name = (fs::temp_directory_path() / "geo-XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        m_folder = name;
    }
    void TearDown() override { fs::remove_all(m_folder); }

    fs::path file() const { return m_folder / "image.gfw"; }

    bool load(const std::string& text, std::int32_t width = 600, std::int32_t height = 550) {
        std::ofstream(file(), std::ios::binary) << text;
        return m_geo.loadWorldFile(file(), width, height);
    }

    fs::path m_folder;
    GeoReference m_geo;
};

TEST_F(GeoReferenceTest, StartsNotValidWithEverythingAtZero) {
    EXPECT_FALSE(m_geo.valid());
    EXPECT_EQ(m_geo.width(), 0);
    EXPECT_EQ(m_geo.height(), 0);
    EXPECT_EQ(m_geo.referenceLongitude(), 0);
    EXPECT_EQ(m_geo.pixelToGeo({100, 50}), (GeoPosition{0, 0}));
    EXPECT_EQ(m_geo.geoToPixel({41, -105}), (ImagePoint{0, 0}));
    EXPECT_FALSE(m_geo.geoToPixelInside({41, -105}).ok);
}

TEST_F(GeoReferenceTest, ATextIsAWorldFileWhenItCanBeLoaded) {
    const std::string texts[] = {
        kPlains,
        std::string(kPlains) + "<html>",
        "0.01 0 0 -0.01 -105.0",
        "",
        "<html>Please log in</html>",
        "404 not found",
        std::string(250, ' ') + kPlains,
    };
    for (const std::string& text : texts) {
        EXPECT_EQ(GeoReference::isWorldFile(text), load(text)) << text;
    }
    EXPECT_TRUE(GeoReference::isWorldFile(kPlains));
    EXPECT_FALSE(GeoReference::isWorldFile("<html>Please log in</html>"));
}

TEST_F(GeoReferenceTest, PlacesAnImageNorthUp) {
    ASSERT_TRUE(load(kPlains));
    EXPECT_TRUE(m_geo.valid());
    EXPECT_EQ(m_geo.width(), 600);
    EXPECT_EQ(m_geo.height(), 550);
    EXPECT_DOUBLE_EQ(m_geo.referenceLongitude(), -102.0);

    const GeoPosition corner = m_geo.pixelToGeo({0, 0});
    EXPECT_NEAR(corner.latitude, 41, 1e-12);
    EXPECT_NEAR(corner.longitude, -105, 1e-12);
    const GeoPosition inner = m_geo.pixelToGeo({100, 50});
    EXPECT_NEAR(inner.latitude, 40.5, 1e-12);
    EXPECT_NEAR(inner.longitude, -104, 1e-12);
    const ImagePoint back = m_geo.geoToPixel({40.5, -104});
    EXPECT_NEAR(back.column, 100, 1e-9);
    EXPECT_NEAR(back.row, 50, 1e-9);
}

TEST_F(GeoReferenceTest, TheSecondNumberMixesTheRowIntoTheLongitude) {
    ASSERT_TRUE(load("0.01 0.002 0.003 -0.01 -105 41"));
    const GeoPosition position = m_geo.pixelToGeo({100, 50});
    EXPECT_NEAR(position.longitude, -105 + 0.01 * 100 + 0.002 * 50, 1e-9);
    EXPECT_NEAR(position.latitude, 41 + 0.003 * 100 - 0.01 * 50, 1e-9);
    const ImagePoint back = m_geo.geoToPixel(position);
    EXPECT_NEAR(back.column, 100, 1e-6);
    EXPECT_NEAR(back.row, 50, 1e-6);
}

TEST_F(GeoReferenceTest, TheCentreIsOfWholePixels) {
    ASSERT_TRUE(load("1 0.25 0 -1 0 0", 3, 3));
    EXPECT_DOUBLE_EQ(m_geo.referenceLongitude(), 1.25);
    ASSERT_TRUE(load("1 0.25 0 -1 0 0", 9, 15));
    EXPECT_DOUBLE_EQ(m_geo.referenceLongitude(), 5.75);
    ASSERT_TRUE(load("1 0.25 0 -1 0 0", -3, -3));
    EXPECT_DOUBLE_EQ(m_geo.referenceLongitude(), -1.25);
}

struct Text {
    const char* why;
    std::string text;
    bool valid;
};

TEST_F(GeoReferenceTest, ReadsSixNumbersBetweenAnyWhiteSpace) {
    const std::string filler(245, ' ');
    const Text rows[] = {
        {"line ends of other systems", "0.01\r\n0.0\r\n0.0\r\n-0.01\r\n-105.0\r\n41.0\r\n", true},
        {"one line", "0.01 0 0 -0.01 -105 41", true},
        {"tabs, form feeds, blank lines", "\t0.01\n\n0\v0\f-0.01\n-105\n41", true},
        {"signs and exponents", "+1e-2 -0 +0.0E0 -1.E-2 -1.05e+2 .41e2", true},
        {"something after the sixth", "0.01 0 0 -0.01 -105 41 and 7 more", true},
        {"letters right after the sixth", "0.01 0 0 -0.01 -105 41north", true},
        {"signs that part numbers", "0.01+0-0-0.01-105+41", true},
        {"too small for a double", "0.01 1e-999 0 -0.01 -105 41", true},
        {"a determinant of zero", "0 0 0 0 -105 41", true},
        {"the sixth within the first 255 bytes", "0.01 0 0 -0.01 -105 41" + filler + "x", true},
        {"the sixth behind them", "0.01 0 0 -0.01 -105" + filler + "41", false},
        {"five numbers", "0.01 0 0 -0.01 -105", false},
        {"nothing", "", false},
        {"white space", " \r\n\t", false},
        {"a comma for the point", "0,01 0 0 -0,01 -105 41", false},
        {"commas between", "0.01,0,0,-0.01,-105,41", false},
        {"hexadecimal", "0x1p-7 0 0 -0.01 -105 41", false},
        {"infinite", "inf 0 0 -0.01 -105 41", false},
        {"not a number", "0.01 0 0 -0.01 nan 41", false},
        {"too large for a double", "0.01 0 0 -0.01 -105 1e999", false},
        {"a page in its place", "<!DOCTYPE html><html>404 Not Found 1 2 3 4 5 6</html>", false},
        {"a zero byte", std::string("0.01 0 0 \0-0.01 -105 41", 23), false},
        {"bytes beyond ASCII",
         "0.01\xA0"
         "0 0 -0.01 -105 41",
         false},
    };
    for (const Text& row : rows) {
        EXPECT_EQ(load(row.text), row.valid) << row.why;
        EXPECT_EQ(m_geo.valid(), row.valid) << row.why;
    }
}

TEST_F(GeoReferenceTest, ANumberCutAtTheEndOfWhatIsReadCountsAsFarAsItGoes) {
    const std::string start = "0.01 0 0 -0.01 -105 ";
    const std::string blanks(255 - start.size() - 1, ' ');
    ASSERT_TRUE(load(start + blanks + "41"));
    EXPECT_NEAR(m_geo.pixelToGeo({0, 0}).latitude, 4, 1e-9);
}

TEST_F(GeoReferenceTest, NumbersHaveAPointWhateverTheLocale) {
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale(), new Comma));
    const bool loaded = load(kPlains);
    std::locale::global(before);
    ASSERT_TRUE(loaded);
    EXPECT_NEAR(m_geo.pixelToGeo({100, 0}).longitude, -104, 1e-9);
}

TEST_F(GeoReferenceTest, AFailedLoadKeepsTheCoefficients) {
    ASSERT_TRUE(load(kPlains));
    EXPECT_FALSE(load("0.5 0 0", 10, 10));
    EXPECT_FALSE(m_geo.valid());
    EXPECT_EQ(m_geo.width(), 600);
    EXPECT_NEAR(m_geo.geoToPixel({40.5, -104}).column, 100, 1e-9);

    EXPECT_TRUE(load(kPlains));
    m_geo.invalidate();
    EXPECT_FALSE(m_geo.valid());
    EXPECT_NEAR(m_geo.geoToPixel({40.5, -104}).column, 100, 1e-9);
}

TEST_F(GeoReferenceTest, WhatIsNoRegularFileIsNotRead) {
    EXPECT_FALSE(m_geo.loadWorldFile(m_folder / "missing.gfw", 600, 550));
    EXPECT_FALSE(m_geo.loadWorldFile(m_folder, 600, 550));
    const fs::path pipe = m_folder / "pipe.gfw";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(m_geo.loadWorldFile(pipe, 600, 550)) << "opening it would wait for a writer";
    EXPECT_FALSE(m_geo.loadWorldFile("/dev/zero", 600, 550));
}

TEST_F(GeoReferenceTest, FindsTheTurnOfTheGlobeThatTheImageIsOn) {
    // Centred at 179 W: pixel (0, 0) at 178 E written as -182.
    ASSERT_TRUE(load("0.01 0 0 -0.01 -182 3"));
    ASSERT_NEAR(m_geo.referenceLongitude(), -179, 1e-9);
    EXPECT_NEAR(m_geo.geoToPixel({0, 179.5}).column, 150, 1e-6) << "as -180.5";
    EXPECT_NEAR(m_geo.geoToPixel({0, -180.5}).column, 150, 1e-6);
    EXPECT_NEAR(m_geo.geoToPixel({0, -179}).column, 300, 1e-6);
    EXPECT_NEAR(m_geo.geoToPixel({0, 1}).column, 18300, 1e-6) << "180 degrees are not too far";
    EXPECT_NEAR(m_geo.geoToPixel({0, 1.001}).column, -17699.9, 1e-6) << "a little more are";

    // Centred at 179 E.
    ASSERT_TRUE(load("0.01 0 0 -0.01 176 3"));
    EXPECT_NEAR(m_geo.geoToPixel({0, -179.5}).column, 450, 1e-6) << "as 180.5";
    EXPECT_NEAR(m_geo.geoToPixel({0, 1080}).column, 54400, 1e-6) << "one turn, not more";
}

TEST_F(GeoReferenceTest, InsideIsDecidedAfterTruncation) {
    ASSERT_TRUE(load("1 0 0 -1 0 0", 60, 50));
    struct Row {
        const char* why;
        GeoPosition position;
        GeoReference::Placed placed;
    };
    const std::int32_t most = std::numeric_limits<std::int32_t>::max();
    const std::int32_t least = std::numeric_limits<std::int32_t>::min();
    const Row rows[] = {
        {"first pixel", {0, 0}, {{0, 0}, true}},
        {"fractions are dropped", {-10.9, 20.9}, {{20, 10}, true}},
        {"last pixel", {-49.9, 59.9}, {{59, 49}, true}},
        {"column = width", {0, 60}, {{60, 0}, false}},
        {"row = height", {-50, 0}, {{0, 50}, false}},
        {"half a pixel left of it", {0, -0.5}, {{0, 0}, true}},
        {"half a pixel above it", {0.5, 0}, {{0, 0}, true}},
        {"more than a pixel left of it", {0, -1.2}, {{-1, 0}, false}},
        {"more than a pixel above it", {1.2, 0}, {{0, -1}, false}},
        {"far above and left", {1e12, -1e12}, {{least, least}, false}},
        {"far below and right", {-1e12, 1e12}, {{most, most}, false}},
        {"infinite", {-kInfinity, 5}, {{5, most}, false}},
        {"latitude not a number", {kNaN, 5}, {{least, least}, false}},
        {"longitude not a number", {-5, kNaN}, {{least, least}, false}},
    };
    for (const Row& row : rows) {
        // A longitude not on this turn of the globe or off the numbers cannot be compared exactly.
        const GeoReference::Placed placed = m_geo.geoToPixelInside(row.position);
        EXPECT_EQ(placed.ok, row.placed.ok) << row.why;
        if (std::isfinite(row.position.latitude) && std::isfinite(row.position.longitude)) {
            EXPECT_EQ(placed.pixel, row.placed.pixel) << row.why;
        }
    }
}

TEST_F(GeoReferenceTest, DrawingReachesTwoThousandMillionPixels) {
    ASSERT_TRUE(load("1e-8 0 0 -1e-8 0 0"));
    const GeoReference::Placed near = m_geo.geoToPixelForDrawing({-19.99, 19.98});
    EXPECT_TRUE(near.ok);
    EXPECT_NEAR(near.pixel.column, 1'998'000'000, 1);
    EXPECT_NEAR(near.pixel.row, 1'999'000'000, 1);
    EXPECT_TRUE(m_geo.geoToPixelForDrawing({19.99, -19.98}).ok);

    const GeoReference::Placed outside{{-1, -1}, false};
    const GeoPosition far[] = {{-20.01, 0}, {20.01, 0},     {0, 20.01}, {0, -20.01},    {0, 180},
                               {90, 0},     {1e300, 1e300}, {kNaN, 0},  {0, kInfinity}, {0, kNaN}};
    for (const GeoPosition& position : far) {
        EXPECT_EQ(m_geo.geoToPixelForDrawing(position), outside)
            << position.latitude << ' ' << position.longitude;
    }
}

TEST_F(GeoReferenceTest, DrawingEndsBeforeTwoThousandMillionPixels) {
    ASSERT_TRUE(load("0.125 0 0 -0.125 0 0")); // numbers without rounding
    const double most = 2e9 * 0.125;
    EXPECT_FALSE(m_geo.geoToPixelForDrawing({-most, 0}).ok);
    EXPECT_FALSE(m_geo.geoToPixelForDrawing({0, most + 360}).ok) << "one turn is taken off";
    const GeoReference::Placed last{{1'999'999'999, 1'999'999'999}, true};
    EXPECT_EQ(m_geo.geoToPixelForDrawing({0.125 - most, most - 0.125 + 360}), last);
}

TEST_F(GeoReferenceTest, DrawingTruncatesTowardsZero) {
    ASSERT_TRUE(load("1 0 0 -1 0 0", 60, 50));
    EXPECT_EQ(m_geo.geoToPixelForDrawing({-3.9, -2.9}), (GeoReference::Placed{{-2, 3}, true}));
    EXPECT_EQ(m_geo.geoToPixelForDrawing({90, 0}), (GeoReference::Placed{{0, -90}, true}));
    EXPECT_EQ(m_geo.geoToPixelForDrawing({-90, 179.5}), (GeoReference::Placed{{179, 90}, true}));
}

TEST_F(GeoReferenceTest, AMapWithoutInverseIsDrawnNowhere) {
    for (const char* text : {"0 0 0 0 -105 41", "1 1 1 1 0 0", "1e200 1e200 1e200 1e200 1 1"}) {
        ASSERT_TRUE(load(text));
        EXPECT_FALSE(m_geo.geoToPixelInside({41, -105}).ok) << text;
        EXPECT_EQ(m_geo.geoToPixelForDrawing({41, -105}), (GeoReference::Placed{{-1, -1}, false}))
            << text;
        EXPECT_TRUE(std::isnan(m_geo.pixelToGeo({1, 1}).latitude)) << text;
    }
}

TEST_F(GeoReferenceTest, EveryPixelComesBack) {
    ASSERT_TRUE(load("0.0092531815646\n0.0\n0.0\n-0.0092531815646\n-80.258827878606\n41.5161\n"));
    for (double column = -1200; column <= 1200; column += 150) {
        for (double row = -1100; row <= 1100; row += 137.5) {
            const ImagePoint back = m_geo.geoToPixel(m_geo.pixelToGeo({column, row}));
            EXPECT_NEAR(back.column, column, 1e-7);
            EXPECT_NEAR(back.row, row, 1e-7);
        }
    }
}

TEST(RealDataGeoReferenceTest, PublishedWorldFilesPutTheRadarAtTheCentre) {
    const char* const data = std::getenv("RAINCAST_TEST_DATA");
    if (data == nullptr || !fs::exists(data)) {
        GTEST_SKIP() << "RAINCAST_TEST_DATA names no folder";
    }
    struct Row {
        const char* id;
        GeoPosition antenna;
    };
    const Row rows[] = {{"MUX", {37.155, -121.898}}, {"LWX", {38.976, -77.487}}};
    for (const Row& row : rows) {
        const std::string name = std::string(row.id) + "_City_Short.gfw";
        GeoReference geo;
        ASSERT_TRUE(geo.loadWorldFile(
            fs::path(data) / "radar-tree/ridge/Overlays/Cities/Short" / name, 600, 550
        )) << row.id;
        const GeoPosition centre = geo.pixelToGeo({300, 275});
        EXPECT_NEAR(centre.latitude, row.antenna.latitude, 0.02) << row.id;
        EXPECT_NEAR(centre.longitude, row.antenna.longitude, 0.02) << row.id;
        EXPECT_DOUBLE_EQ(geo.referenceLongitude(), centre.longitude) << row.id;
    }
}

} // namespace
} // namespace raincast
