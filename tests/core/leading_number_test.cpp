// SPDX-License-Identifier: MIT
#include "core/leading_number.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <string>

namespace raincast {
namespace {

constexpr double kBeyond = HUGE_VAL;

TEST(LeadingNumberTest, TakesTheLongestNumber) {
    const struct {
        const char* text;
        double number;
        const char* rest;
    } rows[] = {
        {"1.5", 1.5, ""},
        {"1,5", 1, ",5"},
        {" \t\n\v\f\r1.5", 1.5, ""},
        {"+1.5", 1.5, ""},
        {"-1.5", -1.5, ""},
        {"-.5x", -0.5, "x"},
        {"5.", 5, ""},
        {"1.5.7", 1.5, ".7"},
        {"1e3", 1000, ""},
        {"1E-2", 0.01, ""},
        {"1e", 1, "e"},
        {"1e+N", 1, "e+N"},
        {"0x1p3", 0, "x1p3"},
        {"1e999,", kBeyond, ","},
        {"-1e999", kBeyond, ""},
        {"1e-999N", kBeyond, "N"},
    };
    for (const auto& row : rows) {
        std::string_view text = row.text;
        const auto number = takeDouble(text);
        ASSERT_TRUE(number) << row.text;
        EXPECT_EQ(*number, row.number) << row.text;
        EXPECT_EQ(text, row.rest);
    }
}

TEST(LeadingNumberTest, LeavesWhatIsNoNumber) {
    for (const char* const word :
         {"",    " ",  "x",   ".",   "-",    "+",        "+-1", "-+1",  "--1",    "+ 1",
          "- 1", "e5", ".e5", "inf", "-inf", "infinity", "nan", "+nan", "nan(1)", "\xB2"}) {
        std::string_view text = word;
        EXPECT_FALSE(takeDouble(text)) << word;
        EXPECT_EQ(text, word);
        EXPECT_FALSE(takeInt(text)) << word;
        EXPECT_EQ(text, word);
    }
}

TEST(LeadingNumberTest, ALongOneIsTakenAsAWhole) {
    const std::string digits(1'000'000, '9');
    std::string_view text = digits;
    EXPECT_EQ(takeDouble(text), kBeyond);
    EXPECT_EQ(text, "");
    const std::string fraction = "0." + std::string(1'000'000, '3');
    text = fraction;
    EXPECT_EQ(takeDouble(text), 1.0 / 3);
    text = digits;
    EXPECT_FALSE(takeInt(text));
    EXPECT_EQ(text, "") << "beyond the range, and taken all the same";
}

TEST(LeadingNumberTest, TakesIntegers) {
    std::string_view text = " +12.5";
    EXPECT_EQ(takeInt(text), 12);
    EXPECT_EQ(text, ".5");
    text = "-2147483648 2147483648";
    EXPECT_EQ(takeInt(text), INT_MIN);
    EXPECT_FALSE(takeInt(text));
    EXPECT_EQ(text, "");
}

} // namespace
} // namespace raincast
