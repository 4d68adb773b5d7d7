// SPDX-License-Identifier: MIT
#include "map/mark_names.h"
#include "map/overlay_mark.h"

#include <gtest/gtest.h>

#include <utility>

namespace raincast {
namespace {

std::string proposedBeside(std::initializer_list<const char16_t*> names) {
    std::list<COverlayMark> marks;
    for (const char16_t* name : names) {
        marks.emplace_back(GeoPosition{1, 2}, QString::fromUtf16(name));
    }
    return proposedMarkName(marks).toStdString();
}

TEST(ProposedMarkName, CountsOnFromTheHighestNumber) {
    EXPECT_EQ(proposedBeside({}), "Mark 1");
    EXPECT_EQ(proposedBeside({u"Harbour"}), "Mark 1");
    EXPECT_EQ(proposedBeside({u"Mark 1", u"Mark 7", u"Mark 3"}), "Mark 8");
    EXPECT_EQ(proposedBeside({u"Mark", u"Mark x", u"mark 9", u"Mark -3", u"Remark 9"}), "Mark 1");
    EXPECT_EQ(proposedBeside({u"Mark 2147483647", u"Mark 99999999999", u"Mark 4"}), "Mark 5");
}

TEST(ShownMarkName, IsOneLineThatIsNeverEmpty) {
    EXPECT_EQ(shownMarkName(QStringLiteral("Harbour")), QStringLiteral("Harbour"));
    EXPECT_EQ(shownMarkName(QStringLiteral("a\nb")), QStringLiteral("a b"));
    EXPECT_EQ(shownMarkName(QString(5000, u'x')).size(), 100);
    for (const char16_t* empty : {u"", u" ", u"\n"}) {
        EXPECT_EQ(shownMarkName(QString::fromUtf16(empty)), QStringLiteral("Unnamed"));
    }
}

TEST(BearingText, HasThreeDigits) {
    const std::pair<double, const char*> cases[] = {{0, "000°"},     {0.5, "001°"},
                                                    {44.6, "045°"},  {359.4, "359°"},
                                                    {359.6, "000°"}, {360, "000°"}};
    for (const auto& [degrees, text] : cases) {
        EXPECT_EQ(bearingText(degrees).toStdString(), text);
    }
}

} // namespace
} // namespace raincast
