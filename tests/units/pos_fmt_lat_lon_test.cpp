// SPDX-License-Identifier: MIT
#include "units/pos_fmt_lat_lon.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace raincast {
namespace {

using Format = CUnits::PosFmtLatLon;
using Style = CUnits::PosFmtLatLon::Style;
using testing::ElementsAre;

constexpr Style kDeg = Style::degrees;
constexpr Style kMin = Style::degreesMinutes;
constexpr Style kSec = Style::degreesMinutesSeconds;
constexpr Style kSigned = Style::signedDegrees;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(PositionFormatTypeTest, TheListHasTheOrderOfTheDialog) {
    std::vector<std::string> names;
    std::vector<int> styles;
    for (const auto* format : CUnits::PositionFormatType::all()) {
        names.push_back(format->name().toStdString());
        styles.push_back(static_cast<int>(dynamic_cast<const Format&>(*format).style()));
    }
    EXPECT_THAT(names, ElementsAre("Degrees", "Deg,Min,Sec", "Deg,Min"));
    EXPECT_THAT(styles, ElementsAre(0, 2, 1));
}

TEST(PositionFormatTypeTest, IsFoundByItsExactName) {
    EXPECT_EQ(CUnits::PositionFormatType::usual().name(), QStringLiteral("Deg,Min"));
    for (const auto* format : CUnits::PositionFormatType::all()) {
        EXPECT_EQ(&CUnits::PositionFormatType::named(format->name()), format);
    }
    EXPECT_EQ(&CUnits::PositionFormatType::named("DEGREES"), &CUnits::PositionFormatType::usual());
}

TEST(PosFmtLatLonTest, WritesOneCoordinate) {
    const struct {
        Style style;
        double degrees;
        const char* text;
    } rows[] = {
        {kDeg, 0, " 0.00000°N"},
        {kDeg, -0.0, " 0.00000°N"},
        {kDeg, 5.5, " 5.50000°N"},
        {kDeg, 41.123456, "41.12346°N"},
        {kDeg, -105.25, "105.25000°S"},
        {kDeg, -0.000001, " 0.00000°S"},
        {kSigned, 0, " 0.00000"},
        {kSigned, -5.25, "-5.25000"},
        {kSigned, -105.25, "-105.25000"},
        {kSigned, 41.5, "41.50000"},
        {kMin, 41.5, "41°30.000'N"},
        {kMin, -0.5, "0°30.000'S"},
        {kMin, 0, "0°00.000'N"},
        {kMin, 41.05, "41°03.000'N"},
        {kMin, 41.999995, "42°00.000'N"},
        {kMin, 41 + 59.9994 / 60, "41°59.999'N"},
        {kMin, 59.9995 / 60, "0°59.999'N"}, // the last: it is just below in binary
        {kMin, 59.99999 / 60, "1°00.000'N"},
        {kMin, -89.9999999, "90°00.000'S"},
        {kSec, -105.25, "105°15'00.0\"S"},
        {kSec, 41.5, "41°30'00.0\"N"},
        {kSec, 41.05125, "41°3'04.5\"N"},
        {kSec, 10 + 20.0 / 60 + 59.94 / 3600, "10°20'59.9\"N"},
        {kSec, 0.01665277777777778, "0°0'60.0\"N"}, // exactly 59.95: only more is rounded up
        {kSec, 0.01665277777777779, "0°1'00.0\"N"},
        {kSec, 10 + 20.0 / 60 + 59.96 / 3600, "10°21'00.0\"N"},
        {kSec, 10 + 59.0 / 60 + 59.96 / 3600, "11°0'00.0\"N"},
        {kSec, -179.999999, "180°0'00.0\"S"},
        {kSec, 41.1, "41°6'00.0\"N"}, // its fraction is just below 6 minutes in binary
        // A receiver's nonsense has a text as well.
        {kMin, 1e10, "10000000000°00.000'N"},
        {kDeg, -2e9, "2000000000.00000°S"},
        {kDeg, kNan, ""},
        {kMin, kInfinity, ""},
        {kSec, -kInfinity, ""},
        {kSigned, kNan, ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Format::formatCoordinate(row.degrees, "NS", row.style).toStdString(), row.text)
            << row.degrees;
    }
    for (const Style style : {kDeg, kMin, kSec, kSigned}) {
        const double greatest = std::numeric_limits<double>::max();
        EXPECT_LT(Format::formatCoordinate(-greatest, "NS", style).size(), 330);
    }
}

// Just below a whole minute or degree a rounded 60 would show.
TEST(PosFmtLatLonTest, NeverShowsSixtyMinutesOrSeconds) {
    std::mt19937 random(8);
    std::uniform_int_distribution<int> whole(0, 179 * 3600);
    std::uniform_real_distribution<double> below(0, 0.06);
    for (int i = 0; i < 100'000; ++i) {
        const double degrees = (whole(random) - below(random)) / 3600;
        EXPECT_FALSE(Format::formatCoordinate(degrees, "EW", kMin).contains(u"°60"));
        const QString seconds = Format::formatCoordinate(degrees, "EW", kSec);
        EXPECT_FALSE(seconds.contains(u"°60")) << qPrintable(seconds);
        EXPECT_FALSE(seconds.contains(u"'60")) << qPrintable(seconds);
    }
}

TEST(PosFmtLatLonTest, WritesPositions) {
    const GeoPosition position{41.5, -105.25};
    const struct {
        Style style;
        const char* text;
    } rows[] = {
        {kDeg, "41.50000°N, 105.25000°W"},
        {kMin, "41°30.000'N, 105°15.000'W"},
        {kSec, "41°30'00.0\"N, 105°15'00.0\"W"},
        {kSigned, "41.50000, -105.25000"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Format::formatPosition(position, row.style).toStdString(), row.text);
        EXPECT_EQ(Format::formatPosition({kNan, 1}, row.style), QString());
        EXPECT_EQ(Format::formatPosition({1, kInfinity}, row.style), QString());
    }
    EXPECT_EQ(Format::formatPosition({-1, 1}, kMin), QStringLiteral("1°00.000'S, 1°00.000'E"));
    for (const auto* format : CUnits::PositionFormatType::all()) {
        const Style style = dynamic_cast<const Format&>(*format).style();
        EXPECT_EQ(format->format(position), Format::formatPosition(position, style));
    }
}

TEST(PosFmtLatLonTest, ReadsPositions) {
    const struct {
        const char* text;
        GeoPosition position;
    } rows[] = {
        {"12.5,-0.25", {12.5, -0.25}},
        {"12.5, -0.25", {12.5, -0.25}},
        {"12.5 -0.25", {12.5, -0.25}},
        {"12. -0.25", {12, -0.25}},
        {"1 2", {1, 2}},
        {"12.5S,0.25W", {-12.5, -0.25}},
        {"12.5s,0.25w", {-12.5, -0.25}},
        {"12.5s 0.25w", {-12.5, -0.25}},
        {"12.5n 0.25e", {12.5, 0.25}},
        {"-12.5S,-0.25W", {12.5, 0.25}}, // the minus sign and the letter cancel out
        {"10,200", {10, 200}},
        {"90,360", {90, 360}},
        {"-90,-360", {-90, -360}},
        {"90S,360W", {-90, -360}},
        {"1e1,2E1", {10, 20}}, // E is an exponent's
        {"10E,20D", {10, 20}},
        {"10E S,20D W", {-10, -20}}, // nor are they a hemisphere
        {"41d30'S,105d15'W", {-41.5, -105.25}},
        {"1e1s,2e1w", {-10, -20}},
        {"+10,+20", {10, 20}},
        {".5,5.", {0.5, 5}},
        {" 0.00000°N,  5.00000°W", {0, -5}},
        {"41°30.5'N 105°10.5'W", {41 + 30.5 / 60, -(105 + 10.5 / 60)}},
        {"41°30'36.0\"N, 105°15'00.0\"W", {41.51, -105.25}},
        {"41° 30' 36\" N, 105° 15' 0\" W", {41.51, -105.25}},
        {"41-30-36N,105-15W", {41.51, -105.25}},
        {"41d30m,105", {41.5, 105}},
        {"41\tS,5", {-41, 5}},
        // Split behind the 41: what follows is 30.5, a letter, and no number behind it.
        {"41 30.5N, 105 10W", {41, 30.5}},
        {"41.5 , -105", {41.5, 0}}, // a comma behind the split starts a part without a number
        {"-41°30',1", {-40.5, 1}},  // minutes are added, whatever the sign
        {"41°-30',1", {40.5, 1}},
        {"41deg30'S,1", {41, 1}}, // G is its first letter
        // The first letter is the hemisphere's, whatever it is.
        {"41aS,5", {41, 5}},
        {"41zS,5", {41, 5}},
        {"41AS,5", {41, 5}},
        {"41ZS,5", {41, 5}},
        {"41[S,5", {-41, 5}},
        {"41{S,5", {-41, 5}},
        {"41@S,5", {-41, 5}},
        {"41`S,5", {-41, 5}},
        {"41DS,5", {-41, 5}}, // D and E are an exponent's
        {"41eS,5", {-41, 5}},
        {"12,5,7", {12, 5 + 7 * 0.016666666666666666}},
        // Parts without a number are 0.
        {",", {0, 0}},
        {"N,", {0, 0}},
        {"x, 5", {0, 5}},
        {"nan,inf", {0, 0}},
        {"-nan(7),infinity", {0, 0}},
        {"0x1p3,5", {1 * 0.016666666666666666 + 3 * 0.0002777777777777778, 5}},
        {"٤١,5", {0, 5}},
        {"41½,5", {41, 5}},
        {"41°30′36″N,5", {41.51, 5}},
        {"41🌍30,5", {41, 5}}, // two units stand there, not one
    };
    for (const auto& row : rows) {
        GeoPosition position{77, 77};
        EXPECT_TRUE(Format::parsePosition(QString::fromUtf8(row.text), position)) << row.text;
        EXPECT_NEAR(position.latitude, row.position.latitude, 1e-12) << row.text;
        EXPECT_NEAR(position.longitude, row.position.longitude, 1e-12) << row.text;
    }
}

TEST(PosFmtLatLonTest, SumsSecondsMinutesDegreesInThatOrder) {
    GeoPosition position;
    ASSERT_TRUE(Format::parsePosition(u"38°5'49.9\"N,1", position));
    const double expected = 49.9 * 0.0002777777777777778 + 5 * 0.016666666666666666 + 38;
    EXPECT_EQ(position.latitude, expected);
}

TEST(PosFmtLatLonTest, WhatIsNoPositionLeavesTheFailingPart) {
    const struct {
        const char* text;
        GeoPosition left;
    } rows[] = {
        {"", {7, 8}},
        {" ", {7, 8}},
        {" 41N", {7, 8}}, // a space in front splits nothing
        {"41N", {7, 8}},
        {"41W 5", {7, 8}},
        {"41°30'N", {7, 8}},
        {"95,10", {7, 10}},
        {"-90.0000001,10", {7, 10}},
        {"89°60'1\",10", {7, 10}},
        {"10,360.5", {10, 8}},
        {"10S,361W", {-10, 8}},
        {"95,999", {7, 8}},
        {"1e999,10", {7, 10}},
        {"10,1e-999", {10, 8}},
        {"1°1e999-1e999,5", {7, 5}},
        {"1e308°1e308-1e308,5", {7, 5}},
    };
    for (const auto& row : rows) {
        GeoPosition position{7, 8};
        EXPECT_FALSE(Format::parsePosition(QString::fromUtf8(row.text), position)) << row.text;
        EXPECT_EQ(position, row.left) << row.text;
    }
}

TEST(PosFmtLatLonTest, VeryLongTextsAreReadOnceThrough) {
    constexpr int kMuch = 4'000'000;
    GeoPosition position{7, 8};
    for (const char16_t filler : {u' ', u'9', u',', u'\0', u'°', u'S', u'-', u'\xD83D'}) {
        static_cast<void>(Format::parsePosition(QString(kMuch, filler), position));
    }
    const QString zeros(kMuch, u'0');
    EXPECT_TRUE(Format::parsePosition(zeros + "12," + zeros + "13W", position));
    EXPECT_EQ(position, (GeoPosition{12, -13}));
    EXPECT_FALSE(Format::parsePosition(QString(kMuch, u'9') + ",5", position));
}

struct RoundTrip {
    Style style;
    double bound; ///< degrees: half of the last digit
};

class PositionRoundTripTest : public testing::TestWithParam<RoundTrip> {};

TEST_P(PositionRoundTripTest, TenThousandPositionsComeBack) {
    const auto [style, bound] = GetParam();
    std::mt19937 random(81);
    std::uniform_real_distribution<double> latitudes(-90, 90);
    std::uniform_real_distribution<double> longitudes(-180, 180);
    const double tolerance = bound * 1.000001 + 1e-12;
    for (int i = 0; i < 10'000; ++i) {
        const GeoPosition position{latitudes(random), longitudes(random)};
        const QString text = Format::formatPosition(position, style);
        GeoPosition again{77, 777};
        ASSERT_TRUE(Format::parsePosition(text, again)) << qPrintable(text);
        ASSERT_NEAR(again.latitude, position.latitude, tolerance) << qPrintable(text);
        ASSERT_NEAR(again.longitude, position.longitude, tolerance) << qPrintable(text);
    }
}

INSTANTIATE_TEST_SUITE_P(
    EveryStyle, PositionRoundTripTest,
    testing::Values(
        RoundTrip{kDeg, 0.000005},    // 0.56 m
        RoundTrip{kMin, 0.0005 / 60}, // 0.93 m
        RoundTrip{kSec, 0.05 / 3600}, // 1.54 m
        RoundTrip{kSigned, 0.000005}
    )
);

} // namespace
} // namespace raincast
