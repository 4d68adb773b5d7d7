// SPDX-License-Identifier: MIT
#include "palette/warning_kinds.h"
#include "player/loop_setting.h"
#include "support/time_zone.h"
#include "warnings/warning_words.h"

#include <gtest/gtest.h>

#include <cmath>

namespace raincast {
namespace {

const FileTime kNow = fromCalendar({2026, 11, 22, 19, 42});

WarningText tornado() {
    WarningText warning;
    warning.event = "Tornado Warning";
    warning.end = fromCalendar({2026, 11, 22, 20, 15});
    return warning;
}

/// Times in UTC for as long as it lives.
struct UtcTimes {
    UtcTimes() { LoopSetting::setUtc(true); }
    ~UtcTimes() { LoopSetting::setUtc(false); }
};

TEST(WarningWordsTest, SayWhoIsWarnedAndUntilWhen) {
    const TimeZone zone("UTC0");
    EXPECT_EQ(
        warnedText(tornado(), WarnedPlace::position, kNow),
        "Tornado Warning for your position until 20:15"
    );
    EXPECT_EQ(
        warnedText(tornado(), WarnedPlace::target, kNow),
        "Tornado Warning for your target until 20:15"
    );
    WarningText endless = tornado();
    endless.end = 0;
    EXPECT_EQ(
        warnedText(endless, WarnedPlace::position, kNow), "Tornado Warning for your position"
    );
}

TEST(WarningWordsTest, TimesAreThoseOfTheUsersZone) {
    const TimeZone zone("CST6");
    EXPECT_EQ(endText(tornado().end, kNow), "until 14:15");
    const UtcTimes utc;
    EXPECT_EQ(endText(tornado().end, kNow), "until 20:15 UTC");
}

TEST(WarningWordsTest, AnEndThatIsFarHasItsDate) {
    const TimeZone zone("UTC0");
    EXPECT_EQ(endText(fromCalendar({2026, 11, 23, 0, 5}), kNow), "until 0:05");
    EXPECT_EQ(endText(fromCalendar({2026, 11, 24, 0, 5}), kNow), "until 2026-11-24 0:05");
    EXPECT_EQ(endText(kNow, kNow), "ended 19:42");
    EXPECT_EQ(endText(kNow + 1, kNow), "until 19:42");
    EXPECT_EQ(endText(fromCalendar({2026, 11, 20, 0, 5}), kNow), "ended 2026-11-20 0:05");
    EXPECT_EQ(endText(0, kNow), "");
}

TEST(WarningWordsTest, TheWholeTextHasAllThatIsKnown) {
    const TimeZone zone("UTC0");
    WarningText warning = tornado();
    EXPECT_EQ(wholeText(warning, kNow), "Tornado Warning until 20:15");
    warning.headline = "A headline ";
    warning.text = "HAZARD...Tornado.\n\nSOURCE...Radar.\n";
    warning.instruction = "<b>TAKE COVER NOW!</b>";
    warning.office = "NWS Norman OK";
    EXPECT_EQ(
        wholeText(warning, kNow),
        "Tornado Warning until 20:15\n\nA headline\n\nHAZARD...Tornado.\n\nSOURCE...Radar.\n\n"
        "<b>TAKE COVER NOW!</b>\n\nNWS Norman OK"
    );
}

TEST(WarningWordsTest, AnEventIsOnOneLine) {
    const TimeZone zone("UTC0");
    WarningText warning = tornado();
    warning.event = " Tornado\nWarning\t";
    EXPECT_EQ(
        warnedText(warning, WarnedPlace::position, kNow),
        "Tornado Warning for your position until 20:15"
    );
}

// What an event holds for a place of a text must not be taken for one.
TEST(WarningWordsTest, AnEventMayHoldAnything) {
    const TimeZone zone("UTC0");
    WarningText warning = tornado();
    warning.event = "%2 %3 100%";
    EXPECT_EQ(
        warnedText(warning, WarnedPlace::position, kNow), "%2 %3 100% for your position until 20:15"
    );
}

double luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

TEST(WarningWordsTest, AreLegibleOnEveryEventsColour) {
    for (const WarningKind kind : kAllWarningKinds) {
        WarningText warning;
        warning.event = nameOf(kind);
        const WarningColours colours = coloursOf(warning);
        EXPECT_EQ(colours.ground.rgb(), colourOf(kind));
        const double light = std::max(luminance(colours.ground), luminance(colours.ink)) + 0.05;
        const double dark = std::min(luminance(colours.ground), luminance(colours.ink)) + 0.05;
        EXPECT_GE(light / dark, 4.5) << warning.event.toStdString();
    }
}

TEST(WarningWordsTest, TheTableSaysWhatIsMoreDangerous) {
    const auto danger = [](const char* event) {
        WarningText warning;
        warning.event = QString::fromLatin1(event);
        return dangerOf(warning);
    };
    EXPECT_GT(danger("Tornado Warning"), danger("Severe Thunderstorm Warning"));
    EXPECT_GT(danger("Severe Thunderstorm Warning"), danger("Flash Flood Warning"));
    EXPECT_GT(danger("Special Weather Statement"), danger("Volcano Warning"));
}

} // namespace
} // namespace raincast
