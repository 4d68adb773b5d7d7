// SPDX-License-Identifier: MIT
#include "window/one_line.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(OneLine, LeavesAUsualNameAsItIs) {
    EXPECT_EQ(oneLine(QStringLiteral("Häfen & Buchten")), QStringLiteral("Häfen & Buchten"));
    EXPECT_EQ(oneLine({}), QString());
}

TEST(OneLine, CutsALongName) {
    const QString longest(100, u'x');
    EXPECT_EQ(oneLine(longest), longest);
    EXPECT_EQ(oneLine(longest + u'y'), QString(99, u'x') + QChar(0x2026));
    EXPECT_EQ(oneLine(QString(1'000'000, u'x')).size(), 100);
}

TEST(OneLine, HasABlankForWhatWouldBreakTheLine) {
    const QString name = QStringLiteral("a\nb\tc\r") + QChar(0x2028) + QChar(0x2029) + QChar(0);
    EXPECT_EQ(oneLine(name), QStringLiteral("a b c    "));
}

} // namespace
} // namespace raincast
