// SPDX-License-Identifier: MIT
#include "map/map_lines.h"
#include "map_page.h"

#include <QFontMetrics>

#include <gmock/gmock.h>

namespace raincast {
namespace {

using test::positionOf;
using test::publish;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr int kWide = 5000;

// --- The way to the target ----------------------------------------------------------------------

class NavigationLineTest : public test::GuiTest, protected test::SharedMapState {
protected:
    NavigationLineTest() {
        position.fixType = kFixGps;
        position.speed = 6;
    }

    [[nodiscard]] std::string line(int width = kWide) const {
        return navigationLine(navigation, position, metrics, width).toStdString();
    }

    const QFont m_font;
    const QFontMetrics metrics{m_font};
    NavigationData navigation{QStringLiteral("Harbour"), 5149.9F, 44.7F, 12.4F, -80.5F};
    CDataGPSPosition position;
};

TEST_F(NavigationLineTest, TellsTheWayToTheTarget) {
    EXPECT_EQ(line(), "Harbour  3.2 Mi  045°  right 12°  XTE 0.05 Mi left");
    navigation.relativeBearing = -90;
    navigation.crossTrack = 161;
    EXPECT_EQ(line(), "Harbour  3.2 Mi  045°  left 90°  XTE 0.10 Mi right");
}

TEST_F(NavigationLineTest, IsInTheUsersUnits) {
    use(CUnits::kMetres);
    EXPECT_EQ(line(), "Harbour  5150 m  045°  right 12°  XTE 81 m left");
}

TEST_F(NavigationLineTest, ATargetInTheDirectionOfTravelIsAhead) {
    for (const float bearing : {0.0F, 0.4F, -0.4F}) {
        navigation.relativeBearing = bearing;
        EXPECT_THAT(line(), testing::HasSubstr("°  ahead  XTE"));
    }
    navigation.relativeBearing = -180;
    EXPECT_THAT(line(), testing::HasSubstr("left 180°"));
}

TEST_F(NavigationLineTest, OnTheLineThereIsNoSide) {
    for (const float offset : {0.0F, 1.0F, -1.0F}) {
        navigation.crossTrack = offset;
        EXPECT_THAT(line(), testing::EndsWith("XTE 0.00 Mi")) << offset;
    }
}

TEST_F(NavigationLineTest, WhoStandsStillDoesNotTurn) {
    position.speed = 0.2F;
    EXPECT_EQ(line(), "Harbour  3.2 Mi  045°  XTE 0.05 Mi left");
    position.speed = 0.21F;
    EXPECT_THAT(line(), testing::HasSubstr("right 12°"));
}

TEST_F(NavigationLineTest, WithLessRoomTheWordsGetShorterBeforeTheName) {
    const int whole = metrics.horizontalAdvance(QString::fromStdString(line()));
    EXPECT_EQ(line(whole), line());
    EXPECT_EQ(line(whole - 1), "Harbour 3.2 Mi 045° R 12° XTE 0.05 Mi L");
}

TEST_F(NavigationLineTest, TheNameIsCutAndNumbersAreNot) {
    navigation.targetName = QStringLiteral("The harbour with the long name");
    const std::string parts = " 3.2 Mi 045° R 12° XTE 0.05 Mi L";
    const std::string text = line(236);
    EXPECT_THAT(text, testing::EndsWith(parts));
    EXPECT_THAT(text, testing::StartsWith("T"));
    EXPECT_THAT(text, testing::HasSubstr("…"));
    EXPECT_LE(metrics.horizontalAdvance(QString::fromStdString(text)), 236);
    navigation.targetName = QString(100'000, u'x');
    EXPECT_LE(metrics.horizontalAdvance(QString::fromStdString(line(236))), 236);
}

TEST_F(NavigationLineTest, AtLastPartsAreLeftOutFromTheEnd) {
    std::string before = line();
    bool withoutCrossTrack = false;
    bool withoutTurn = false;
    for (int width = 300; width > 40; --width) {
        const std::string text = line(width);
        withoutCrossTrack = withoutCrossTrack || text.ends_with("R 12°");
        withoutTurn = withoutTurn || text.ends_with("045°");
        EXPECT_THAT(text, testing::HasSubstr("3.2 Mi"));
        EXPECT_LE(text.size(), before.size());
        if (width >= 120) {
            EXPECT_LE(metrics.horizontalAdvance(QString::fromStdString(text)), width);
        }
        before = text;
    }
    EXPECT_TRUE(withoutCrossTrack);
    EXPECT_TRUE(withoutTurn);
}

// --- On a map -----------------------------------------------------------------------------------

class MapLinesTest : public test::MapTest {
protected:
    MapLinesTest() {
        view->setRectangle({0, 0, kWidth, kHeight});
        view->placeOnEarth();
        showPage();
    }

    [[nodiscard]] std::vector<std::string> lines() const {
        std::vector<std::string> texts;
        for (const QString& line :
             mapLines(view->lastFix(), marks.navigation(), m_metrics, kWide)) {
            texts.push_back(line.toStdString());
        }
        return texts;
    }
    /// How many rows of pixels from the top are not what the bare map is: the lines'.
    [[nodiscard]] int rowsOfText() const {
        const QImage picture = screen();
        int rows = 0;
        for (int y = 0; y < 60; ++y) {
            for (int x = 2; x < 40; ++x) {
                rows = picture.pixelColor(x, y) == QColor(Qt::black) ? y + 1 : rows;
            }
        }
        return rows;
    }

    const QFont m_font;
    const QFontMetrics m_metrics{m_font};
};

TEST_F(MapLinesTest, ThePositionIsShownWhileThereIsAFix) {
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_EQ(rowsOfText(), 0);
    publish(300, 275);
    EXPECT_THAT(lines(), ElementsAre("38°14.700'N, 101°59.700'W"));
    EXPECT_GT(rowsOfText(), 0);
    publish(300, 275, kFixNone);
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_EQ(rowsOfText(), 0) << "the map is painted again at once";
}

TEST_F(MapLinesTest, TheWayIsShownWhileThereIsATargetAndAFix) {
    const COverlayMark& mark = addMark(400, 275, QStringLiteral("Harbour"));
    publish(300, 275);
    EXPECT_EQ(lines().size(), 1U);
    const int oneLine = rowsOfText();
    marks.setTarget(mark);
    EXPECT_EQ(lines().size(), 1U) << "not before it is known";
    publish(300, 275);
    EXPECT_THAT(lines(), ElementsAre("Harbour  54.4 Mi  090°  XTE 0.00 Mi", testing::_));
    EXPECT_GT(rowsOfText(), oneLine);
    publish(300, 275, kFixNone);
    EXPECT_THAT(lines(), IsEmpty());
    EXPECT_EQ(rowsOfText(), 0);
    publish(300, 275);
    EXPECT_EQ(lines().size(), 2U);
    marks.clearTarget();
    EXPECT_EQ(lines().size(), 1U);
    EXPECT_EQ(rowsOfText(), oneLine) << "the map is painted again at once";
}

TEST_F(MapLinesTest, ANewNameOfTheTargetIsShownAtOnce) {
    const COverlayMark& mark = addMark(400, 275, QStringLiteral("Harbour"));
    marks.setTarget(mark);
    publish(300, 275);
    const QImage before = screen();
    marks.rename(mark, QStringLiteral("Port"));
    EXPECT_THAT(lines()[0], testing::StartsWith("Port  "));
    EXPECT_NE(screen(), before);
}

TEST_F(MapLinesTest, OtherUnitsAreShownAtOnce) {
    marks.setTarget(addMark(400, 275, QStringLiteral("Harbour")));
    publish(300, 275);
    const QImage miles = screen();
    use(CUnits::kKilometres);
    EXPECT_THAT(lines()[0], testing::StartsWith("Harbour  87.5 km  090°"));
    EXPECT_NE(screen(), miles);
}

TEST_F(MapLinesTest, EachLineIsShownAsTheUserWants) {
    marks.setTarget(addMark(400, 275, QStringLiteral("Harbour")));
    publish(300, 275);
    MapLinesSetting::show(MapLinesSetting::position, false);
    EXPECT_THAT(lines(), ElementsAre(testing::StartsWith("Harbour")));
    MapLinesSetting::show(MapLinesSetting::navigation, false);
    EXPECT_THAT(lines(), IsEmpty());
    MapLinesSetting::show(MapLinesSetting::position, true);
    EXPECT_THAT(lines(), ElementsAre(testing::StartsWith("38°")));
}

TEST_F(MapLinesTest, TheyStandOverThePicturesAndMarksWithinTheMap) {
    view->setRectangle({20, 30, 60, 45});
    publish(300, 275);
    view->centreOn(positionOf(300, 275));
    const QImage picture = screen();
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            const bool within = x >= 20 && x < 60 && y >= 30 && y < 45;
            EXPECT_TRUE(within || picture.pixelColor(x, y) != QColor(Qt::black)) << x << "," << y;
        }
    }
    EXPECT_EQ(picture.pixelColor(22, 30), QColor(Qt::white));
}

} // namespace
} // namespace raincast
