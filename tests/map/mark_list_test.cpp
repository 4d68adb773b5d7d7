// SPDX-License-Identifier: MIT
#include "map/mark_list.h"
#include "map/overlay_mark.h"
#include "units/units.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace raincast {
namespace {

using testing::ElementsAre;

class MarkListTest : public testing::Test {
protected:
    ~MarkListTest() override {
        CUnits usual;
        usual.units = CUnits::kMiles;
        CUnits::setGlobal(usual);
    }
    void add(double latitude, double longitude, const char16_t* name) {
        marks.emplace_back(GeoPosition{latitude, longitude}, QString::fromUtf16(name));
    }
    [[nodiscard]] std::vector<std::string> names(const std::optional<GeoPosition>& from) const {
        std::vector<std::string> found;
        for (const MarkRow& row : listMarks(marks, from)) {
            found.push_back(row.mark->name.toStdString());
        }
        return found;
    }

    std::list<COverlayMark> marks;
};

TEST_F(MarkListTest, TheNearestMarkIsTheFirst) {
    add(42, -105, u"far");
    add(41.1, -105, u"near");
    add(40.5, -105, u"between");
    EXPECT_THAT(names(GeoPosition{41, -105}), ElementsAre("near", "between", "far"));
    EXPECT_THAT(names(GeoPosition{42, -105}), ElementsAre("far", "near", "between"));
}

TEST_F(MarkListTest, MarksAtTheSameDistanceStayInTheirOrder) {
    for (const char16_t* name : {u"a", u"b", u"c"}) {
        add(41, -105, name);
    }
    EXPECT_THAT(names(GeoPosition{41, -105}), ElementsAre("a", "b", "c"));
}

TEST_F(MarkListTest, WithoutAPositionTheyStandInTheirOwnOrder) {
    add(42, -105, u"first");
    add(-41, 105, u"second");
    EXPECT_THAT(names(std::nullopt), ElementsAre("first", "second"));
}

// As a file may hold them.
TEST_F(MarkListTest, MarksThatAreNowhereComeLastInTheirOrder) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    add(std::nan(""), -105, u"no latitude");
    add(42, -105, u"far");
    add(90.5, -105, u"beyond the pole");
    add(41.1, -105, u"near");
    add(41, kInfinity, u"no longitude");
    add(41, 1e300, u"around");
    EXPECT_THAT(
        names(GeoPosition{41, -105}),
        ElementsAre("near", "far", "no latitude", "beyond the pole", "no longitude", "around")
    );
    const auto rows = listMarks(marks, GeoPosition{41, -105});
    EXPECT_EQ(rows[0].wayText().toStdString(), "6.9 Mi  000\u00b0");
    for (std::size_t i = 2; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].wayText().toStdString(), "not on earth") << i;
    }
}

TEST_F(MarkListTest, TheDateLineIsNoBorder) {
    add(-17, 178, u"west");
    add(-17, -179.9, u"across");
    EXPECT_THAT(names(GeoPosition{-17, 179.9}), ElementsAre("across", "west"));
    EXPECT_NEAR(listMarks(marks, GeoPosition{-17, 179.9})[0].bearingDegrees, 90, 0.01);
}

TEST_F(MarkListTest, TheWayIsInTheUsersUnits) {
    add(41, -104.9, u"east");
    const GeoPosition from{41, -105};
    EXPECT_EQ(listMarks(marks, from)[0].wayText().toStdString(), "5.2 Mi  090°");
    CUnits units;
    units.units = CUnits::kKilometres;
    CUnits::setGlobal(units);
    EXPECT_EQ(listMarks(marks, from)[0].wayText().toStdString(), "8.4 km  090°");
}

TEST_F(MarkListTest, TenThousandMarksAreNoTrouble) {
    for (int i = 0; i < 10'000; ++i) {
        add(41 + (i * 7919 % 10'000) / 10'000.0, -105, u"x");
    }
    const auto rows = listMarks(marks, GeoPosition{41, -105});
    ASSERT_EQ(rows.size(), 10'000U);
    EXPECT_TRUE(std::is_sorted(rows.begin(), rows.end(), [](const auto& one, const auto& other) {
        return one.distanceMetres < other.distanceMetres;
    }));
    EXPECT_NEAR(rows.back().distanceMetres, 111'000, 600);
    while (!marks.empty()) {
        marks.pop_back(); // the list of all overlays is searched from its end
    }
}

} // namespace
} // namespace raincast
