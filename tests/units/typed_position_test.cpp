// SPDX-License-Identifier: MIT
#include "units/pos_fmt_lat_lon.h"
#include "units/typed_position.h"

#include <gtest/gtest.h>

#include <random>

namespace raincast {
namespace {

using Style = CUnits::PosFmtLatLon::Style;

std::optional<GeoPosition> typed(const char* text) {
    return typedPosition(QString::fromUtf8(text));
}

TEST(TypedPositionTest, UnderstandsHowPeopleWritePositions) {
    const GeoPosition bay{37.375, -(121 + 55 / 60.0)};
    const GeoPosition south{-12.5, 0.25};
    const struct {
        const char* text;
        GeoPosition position;
    } rows[] = {
        // A comma divides.
        {"37 22.5, -121 55", bay},
        {"37 22.5 N, 121 55 W", bay},
        {"37 22.5N,121 55W", bay},
        {"N37.2, W121.6", {37.2, -121.6}},
        {"n 37.2 , w 121.6", {37.2, -121.6}},
        {"37.375, \u2212121 55", bay}, // the minus of print
        {"37.375, \u2013121 55", bay},
        {"\u221212.5, 0.25", south},
        {"12.5S, 0.25E", south},
        {"12\u00b030'S, 0\u00b015'E", south},
        {"12\u00ba30.0\u2032 S,0\u00ba15\u203200\u2033 E", south},
        {"12\u00b0 30\u2019 S, 0\u00b0 15\u2019 0\u201d E", south},
        {"12:30:00 s, 0:15:00 e", south},
        {"12-30-00S, 0-15E", south},
        {"12d30m S, 0d15m E", south},
        {"12\u00b030'0''S, 0.25", south},
        {"37 22 30, -121 55", bay},
        {"+37 22.5, -121 55 00.0", bay},
        {" 37.375\u00b0N,  121\u00a055\u00a0W ", bay}, // with spaces that do not break
        {".5, 5.", {0.5, 5}},
        {"-0 30, -0 15", {-0.5, -0.25}}, // the minus is that of all of it
        {"90, 360", {90, 360}},
        {"-90, -360", {-90, -360}},
        {"41\u00b059'60.0\"N, 105\u00b0W", {42, -105}}, // as rounding may show it
        // Without one they part where both make sense.
        {"37.375 -121.5", {37.375, -121.5}},
        {"37 22.5 -121 55", bay},
        {"37 22.5 121 55", {37.375, -bay.longitude}},
        {"37 22 30 -121 55 0", bay},
        {"37 22.5 -121", {37.375, -121}},
        {"37 22.5 N 121 55 W", bay},
        {"37 22.5N 121 55W", bay},
        {"N37 22.5 W121 55", bay},
        {"N37 22.5 W121 55 00", bay},
        {"37\u00b022.5'N 121\u00b055'W", bay},
        {"37\u00b022.5'N121\u00b055'W", bay},
        {"N37.2W121.6", {37.2, -121.6}}, // a letter alone parts them, too
        {"N37.2E121.6", {37.2, 121.6}},
        {"n37.2w121.6", {37.2, -121.6}},
        {"s37.2e121.6", {-37.2, 121.6}},
        {"37.2N121.6W", {37.2, -121.6}},
        {"37.2S121.6E", {-37.2, 121.6}},
        {"37.2n121.6w", {37.2, -121.6}},
        {"37.2s121.6e", {-37.2, 121.6}},
        {"37-22.5N 121-55W", bay},
        {"37-22.5 -121-55", bay},
        {"41 30 10 20", {41.5, 10 + 20 / 60.0}}, // of several places the one in the middle
    };
    for (const auto& row : rows) {
        const auto position = typed(row.text);
        ASSERT_TRUE(position) << row.text;
        EXPECT_NEAR(position->latitude, row.position.latitude, 1e-12) << row.text;
        EXPECT_NEAR(position->longitude, row.position.longitude, 1e-12) << row.text;
    }
}

TEST(TypedPositionTest, RefusesWhatIsNoPosition) {
    const char* const rows[] = {
        "", " ", ",", "the harbour",
        // Half of it is missing: nothing is taken for 0.
        "37.2", "37.2,", ", 121.6", "37.2, ", "37.2, W", "N, W", "N, 121.6", "37.2 N", "x, 5",
        "5, x", "37 22.5 N,", "nan, inf",
        // More than a position, or what may be one in two ways.
        "37.2, 121.6, 5", "37,2, 121,6", "37.2 121.6, 5", "41 30 10", "41 30 10 20 30",
        "37.5 22.5, -121", "37 75, -121", "37 60.1, -121", "37 22 60.1, -121", "37 22.5 61, -121",
        "-37.2 S, 121", "N-37.2, 121", "N37.2N, 121", "37.2, -121 -30", "--37, 121",
        // Hemispheres of the other coordinate: latitude comes first.
        "W121.6, N37.2", "37 E, 121 N", "37 N, 121 S",
        // Beyond the earth.
        "90.0001, 5", "90 0 0.1, 5", "5, 360.0001", "-91, 5",
        // Numbers are plain decimals.
        "1e1, 5", "0x1p3, 5", "\u0664\u0661, 5", "1.2.3, 5", "41\u00bd, 5", "37'22.5, 5",
        "22.5', 5", // of which degree?
    };
    for (const char* text : rows) {
        EXPECT_FALSE(typed(text)) << text;
    }
}

TEST(TypedPositionTest, VeryLongTextsAreNoPositionAndTakeNoTime) {
    for (const char16_t filler : {u' ', u'9', u',', u'\0', u'S', u'W', u'-', u'\xD83D'}) {
        EXPECT_FALSE(typedPosition(QString(1'000'000, filler))) << static_cast<int>(filler);
        EXPECT_FALSE(typedPosition(QString(200, filler))) << static_cast<int>(filler);
    }
    EXPECT_FALSE(typedPosition(QStringLiteral("9 ").repeated(90)));
}

TEST(TypedPositionTest, TwoHundredCharactersAreReadAndNoMore) {
    const QString most = "37." + QString(194, u'0') + ", 5";
    ASSERT_EQ(most.size(), 200);
    EXPECT_EQ(typedPosition(most), (GeoPosition{37, 5}));
    EXPECT_EQ(typedPosition("  " + most + ' '), (GeoPosition{37, 5})) << "spaces do not count";
    EXPECT_FALSE(typedPosition('0' + most));
}

// What a dialog proposes can be accepted as it is.
TEST(TypedPositionTest, ReadsEveryFormatThatPositionsAreWrittenIn) {
    std::mt19937 random(22);
    std::uniform_real_distribution<double> latitudes(-90, 90);
    std::uniform_real_distribution<double> longitudes(-180, 180);
    for (int i = 0; i < 1'000; ++i) {
        const GeoPosition position{latitudes(random), longitudes(random)};
        for (const Style style :
             {Style::degrees, Style::degreesMinutes, Style::degreesMinutesSeconds,
              Style::signedDegrees}) {
            const QString text = CUnits::PosFmtLatLon::formatPosition(position, style);
            const auto read = typedPosition(text);
            ASSERT_TRUE(read) << qPrintable(text);
            GeoPosition parsed;
            ASSERT_TRUE(CUnits::PosFmtLatLon::parsePosition(text, parsed));
            ASSERT_NEAR(read->latitude, parsed.latitude, 1e-12) << qPrintable(text);
            ASSERT_NEAR(read->longitude, parsed.longitude, 1e-12) << qPrintable(text);
        }
    }
}

} // namespace
} // namespace raincast
