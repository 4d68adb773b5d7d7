// SPDX-License-Identifier: MIT
#include "radar/catalogue/typing_errors.h"

#include <QString>

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(TypingErrorsTest, CountsLettersTooManyTooFewWrongAndSwapped) {
    struct Row {
        QString typed;
        QString meant;
        std::size_t errors;
    };
    const Row rows[] = {
        {"", "", 0},         {"MUX", "MUX", 0},        {"mux", "MUX", 0}, {"", "MUX", 3},
        {"MUX", "", 3},      {"MUXX", "MUX", 1},       {"MX", "MUX", 1},  {"MAX", "MUX", 1},
        {"UMX", "MUX", 1},   {"MXU", "MUX", 1},        {"XUM", "MUX", 2}, {"N0R", "NOR", 1},
        {"ABCD", "BADC", 2}, {"kitten", "sitting", 3},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(typingErrors(row.typed, row.meant), row.errors)
            << qPrintable(row.typed) << ' ' << qPrintable(row.meant);
    }
    EXPECT_EQ(typingErrors(QString(100'000, u'M'), u"MUX"), 99'999U);
}

TEST(TypingErrorsTest, FindsAllThatAreNearest) {
    using Indices = std::vector<std::size_t>;
    EXPECT_EQ(fewestTypingErrors(u"b", {}), Indices{});
    EXPECT_EQ(fewestTypingErrors(u"ab", {u"xyz", u"ac", u"abcd", u"cb"}), (Indices{1, 3}));
    EXPECT_EQ(fewestTypingErrors(u"ab", {u"ac", u"ab", u"cb"}), (Indices{1}));
}

} // namespace
} // namespace raincast
