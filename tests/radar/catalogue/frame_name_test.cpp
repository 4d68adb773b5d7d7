// SPDX-License-Identifier: MIT
#include "core/text.h"
#include "radar/catalogue/frame_name.h"
#include "support/time_zone.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace raincast {
namespace {

const QString kBmx = QStringLiteral("BMX");
const QString kN0r = QStringLiteral("N0R");

TEST(FrameNameTest, PathsAndNames) {
    const FileTime time = fromCalendar({2007, 6, 15, 18, 30, 59, 999});
    EXPECT_EQ(listingDirectory(kBmx, kN0r), QStringLiteral("/ridge/RadarImg/N0R/BMX/"));
    EXPECT_EQ(frameFileName(kBmx, time, kN0r), QStringLiteral("BMX_20070615_1830_N0R.gif"));
    EXPECT_EQ(warningsFileName(kBmx), QStringLiteral("BMX_Warnings_0.gif"));
    EXPECT_EQ(
        warningsPath(kBmx, QStringLiteral("Long")),
        QStringLiteral("/ridge/Warnings/Long/BMX_Warnings_0.gif")
    );
}

struct Row {
    const char* what;
    std::set<QString> listing;
    std::optional<FileTime> newest;
};

TEST(FrameNameTest, TheNewestFrameIsTheGreatestNameOfAFramesForm) {
    const FileTime noon = fromCalendar({2007, 6, 15, 12, 0});
    const Row rows[] = {
        {"nothing", {}, std::nullopt},
        {"several dates",
         {"BMX_20070615_1200_N0R.gif", "BMX_20070614_2359_N0R.gif", "BMX_20061231_2359_N0R.gif"},
         noon},
        {"a year that does not begin with 2",
         {"BMX_20070615_1200_N0R.gif", "BMX_90070615_1200_N0R.gif"},
         noon},
        {"other lengths",
         {"BMX_20070615_1200_N0R.gif", "BMX_20070615_1201_N0R.gif2", "BMX_20070615_1201_N0.gif"},
         noon},
        {"no underscore", {"BMX_20070615_1200_N0R.gif", "BMXX20070615_1201_N0R.gif"}, noon},
        {"what a listing holds beside frames",
         {"BMX_20070615_1200_N0R.gif", "?C=N;O=D", "/ridge/RadarImg/N0R/", "/icons/image2.gif", "",
          "text/html; charset=utf-8"},
         noon},
        {"only other names", {"?C=N;O=D", "/icons/image2.gif"}, std::nullopt},
        {"digits that are no time", {"BMX_20071315_1200_N0R.gif"}, std::nullopt},
        {"no digits", {"BMX_2oo7o615_1200_N0R.gif"}, std::nullopt},
        {"digits of another script",
         {QString::fromUtf8("BMX_2٠٠٧٠٦١٥_1200_N0R.gif")},
         std::nullopt},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(newestFrameTime(row.listing), row.newest) << row.what;
    }
}

TEST(FrameNameTest, AFrameMoreThanADayAheadIsNone) {
    const FileTime now = fromCalendar({2007, 6, 15, 12, 0});
    const std::set<QString> others = {
        "?C=N;O=D", "BMX_20070615_1200_N0R.gif", "BMX_20071315_1200_N0R.gif", "BMX_City_Short.gif"};
    std::set<QString> listing = others;
    listing.insert("BMX_20070616_1200_N0R.gif");
    std::set<QString> kept = listing;
    listing.insert({"BMX_20070616_1201_N0R.gif", "BMX_29991231_2359_N0R.gif"});
    removeFramesAhead(listing, now);
    EXPECT_EQ(listing, kept);
    removeFramesAhead(listing, now - 1);
    EXPECT_EQ(listing, others);
}

TEST(FrameNameTest, AFilesNameTellsItsTime) {
    EXPECT_EQ(
        frameTime(QStringLiteral("BMX_20070615_1830_N0R.gif")), fromCalendar({2007, 6, 15, 18, 30})
    );
    EXPECT_EQ(frameTime(QStringLiteral("BMX_City_Short.gif")), std::nullopt);
    EXPECT_EQ(frameTime(QStringLiteral("BMX_20071315_1830_N0R.gif")), std::nullopt);
    EXPECT_EQ(frameTime(QString()), std::nullopt);
}

TEST(FrameNameTest, TheClockHasTwelveHoursAndNoMarkOfTheHalfDay) {
    const TimeZone utc("UTC0");
    const auto at = [](int hour, int minute) {
        return clockText(fromCalendar({2007, 6, 15, hour, minute})).toStdString();
    };
    EXPECT_EQ(at(13, 5), "1:05");
    EXPECT_EQ(at(12, 30), "12:30");
    EXPECT_EQ(at(0, 40), "0:40");
    EXPECT_EQ(at(0, 5), "0:05");
    EXPECT_EQ(at(23, 59), "11:59");
}

TEST(FrameNameTest, TheClockIsTheLocalOne) {
    const TimeZone eastern("EST5EDT,M3.2.0,M11.1.0");
    EXPECT_EQ(clockText(fromCalendar({2007, 6, 15, 17, 5})), QStringLiteral("1:05"));
    EXPECT_EQ(clockText(fromCalendar({2007, 1, 15, 17, 5})), QStringLiteral("12:05"));
    // Files have it so, whoever reads them.
    const QLocale american(QLocale::English, QLocale::UnitedStates);
    Text::use({.times = &american});
    EXPECT_EQ(clockText(fromCalendar({2007, 6, 15, 17, 5})), QStringLiteral("1:05"));
    Text::use({});
}

} // namespace
} // namespace raincast
