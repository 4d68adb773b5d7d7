// SPDX-License-Identifier: MIT
#include "weather/image_age.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

struct Row {
    FileTime minutes;
    const char* text;
};

TEST(ImageAgeTest, TellsWhatIsOlderThanTwentyMinutes) {
    const Row rows[] = {
        {-5, ""},
        {0, ""},
        {20, ""},
        {21, "Image is 21 minutes old"},
        {43, "Image is 43 minutes old"},
        {119, "Image is 119 minutes old"},
        {120, "Image is 2 hours old"},
        {47 * 60 + 59, "Image is 47 hours old"},
        {48 * 60, "Image is 2 days old"},
        {364 * 24 * 60, "Image is 364 days old"},
        {365 * 24 * 60, "Image is 1 year old"},
        {3 * 365 * 24 * 60, "Image is 3 years old"},
    };
    const FileTime taken = fromCalendar({2019, 5, 19, 5, 54});
    for (const Row& row : rows) {
        EXPECT_EQ(
            imageAge(taken, taken + row.minutes * kFileTimePerMinute).text.toStdString(), row.text
        ) << row.minutes;
    }
    EXPECT_EQ(
        imageAge(taken, taken + 20 * kFileTimePerMinute + 1).text.toStdString(),
        "Image is 20 minutes old"
    );
    EXPECT_EQ(imageAge(0, taken).text.toStdString(), "");
}

TEST(ImageAgeTest, OverAnHourIsVeryOld) {
    const FileTime taken = fromCalendar({2019, 5, 19, 5, 54});
    EXPECT_FALSE(imageAge(taken, taken + 60 * kFileTimePerMinute).overAnHour);
    EXPECT_TRUE(imageAge(taken, taken + 60 * kFileTimePerMinute + 1).overAnHour);
}

TEST(ClockLineTest, SaysWhoseTheTimeIsWhereTheClockIsWrong) {
    using Teller = Clock::Teller;
    EXPECT_EQ(clockLine(Teller::system), "");
    EXPECT_EQ(
        clockLine(Teller::receiver), "This device's clock is wrong: the time is the receiver's"
    );
    EXPECT_EQ(clockLine(Teller::nobody), "This device's clock is wrong: ages are not known");
}

} // namespace
} // namespace raincast
