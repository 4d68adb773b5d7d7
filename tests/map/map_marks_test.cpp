// SPDX-License-Identifier: MIT
// Marks as the user adds them on a map.
#include "map/map_marks.h"
#include "map_page.h"
#include "support/dialog_script.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QListWidget>

#include <gmock/gmock.h>

namespace raincast {
namespace {

using test::positionOf;
using test::publish;
using testing::ElementsAre;
using testing::IsEmpty;

class MapMarksTest : public test::MapTest {
protected:
    MapMarksTest() {
        view->placeOnEarth();
        view->showPixel({300, 275});
        showPage();
    }
    ~MapMarksTest() override {
        if (openMenu() != nullptr) {
            openMenu()->close();
        }
    }

    /// The name dialog opens with `proposed` in it and gets a name and Enter.
    void expectName(const QString& proposed, const QString& typed) {
        script.expect(QStringLiteral("Add Mark"), [=](QDialog& dialog) {
            auto* const edit = dialog.findChild<QLineEdit*>();
            EXPECT_EQ(edit->text(), proposed);
            EXPECT_EQ(edit->selectedText(), proposed) << "typing replaces it";
            QTest::keyClicks(edit, typed);
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
    }
    void add() { EXPECT_TRUE(view->command(kAddMark, clicked)); }
    /// The image pixel that a map shows the newest mark at.
    [[nodiscard]] ImagePixel newest() const {
        const GeoPosition place = marks.marks().back().position();
        return {
            static_cast<int>(std::floor((place.longitude + 105) * 100)),
            static_cast<int>(std::floor((41 - place.latitude) * 100))};
    }

    test::DialogScript script;
};

TEST_F(MapMarksTest, AMarkIsAddedInTheMiddleOfTheMap) {
    expectName(QStringLiteral("Mark 1"), QStringLiteral("Harbour"));
    add();
    EXPECT_THAT(markNames(), ElementsAre("Harbour"));
    EXPECT_EQ(newest(), (ImagePixel{300, 275}));
    expectName(QStringLiteral("Mark 1"), QString());
    add();
    expectName(QStringLiteral("Mark 2"), QString());
    add();
    EXPECT_THAT(markNames(), ElementsAre("Harbour", "Mark 1", "Mark 2"));
}

TEST_F(MapMarksTest, WhileTheUserIsFollowedAMarkIsAddedWhereHeIs) {
    publish(100, 110);
    expectName(QStringLiteral("Mark 1"), QString());
    add();
    EXPECT_EQ(newest(), (ImagePixel{300, 275})) << "not following";
    view->follow();
    publish(120, 130);
    expectName(QStringLiteral("Mark 2"), QString());
    add();
    EXPECT_EQ(marks.marks().back().position(), positionOf(120, 130)) << "to the last digit";
    publish(120, 130, kFixNone);
    view->showPixel({200, 210});
    expectName(QStringLiteral("Mark 3"), QString());
    add();
    EXPECT_EQ(newest(), (ImagePixel{200, 210})) << "without a fix nobody knows where he is";
}

TEST_F(MapMarksTest, ACancelledNameAddsNothing) {
    script.expect(QStringLiteral("Add Mark"));
    add();
    EXPECT_THAT(markNames(), IsEmpty());
}

TEST_F(MapMarksTest, AnEmptyNameIsTheProposedOne) {
    script.expect(QStringLiteral("Add Mark"), [](QDialog& dialog) {
        dialog.findChild<QLineEdit*>()->setText(QStringLiteral("  "));
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    add();
    EXPECT_THAT(markNames(), ElementsAre("Mark 1"));
}

TEST_F(MapMarksTest, AHeldPressAddsAMarkUnderTheFinger) {
    press(90, 50);
    EXPECT_TRUE(QTest::qWaitFor([] { return openMenu() != nullptr; }, 20000));
    lift(90, 50);
    expectName(QStringLiteral("Mark 1"), QStringLiteral("Here"));
    choose(QStringLiteral("Add Mark Here"));
    EXPECT_THAT(markNames(), ElementsAre("Here"));
    EXPECT_EQ(newest(), (ImagePixel{320, 255}));
}

TEST_F(MapMarksTest, TheRightButtonAddsAMarkUnderThePointer) {
    view->command(kZoomOut, 0);
    view->showPixel({300, 276});
    pressRight(60, 75);
    expectName(QStringLiteral("Mark 1"), QStringLiteral("Here"));
    choose(QStringLiteral("Add Mark Here"));
    EXPECT_EQ(newest(), view->view().toImage({60, 75}));
}

TEST_F(MapMarksTest, APlaceBecomesTheTarget) {
    pressRight(90, 50);
    choose(QStringLiteral("Set as Target"));
    EXPECT_THAT(markNames(), ElementsAre("Mark 1"));
    EXPECT_EQ(newest(), (ImagePixel{320, 255}));
    EXPECT_TRUE(marks.isTarget(marks.marks().back()));
    pressRight(30, 50);
    choose(QStringLiteral("Set as Target"));
    EXPECT_EQ(markNames().size(), 2U);
    pressRight(101, 45);
    choose(QStringLiteral("Set as Target"));
    EXPECT_EQ(markNames().size(), 2U) << "the mark that stands there";
    EXPECT_TRUE(marks.isTarget(marks.marks().front()));
    pressRight(103, 50);
    choose(QStringLiteral("Set as Target"));
    EXPECT_EQ(markNames().size(), 3U) << "further away it is a place of its own";
}

TEST_F(MapMarksTest, APlacesPositionIsCopied) {
    pressRight(90, 50);
    choose(QStringLiteral("Copy Position"));
    EXPECT_EQ(
        QGuiApplication::clipboard()->text(), CUnits::global().formatPosition(positionOf(320, 255))
    );
}

TEST_F(MapMarksTest, APlaceIsPutInTheMiddleAndFollowingEnds) {
    publish(300, 275);
    view->follow();
    pressRight(90, 50);
    choose(QStringLiteral("Centre Here"));
    EXPECT_EQ(view->centrePixel(), (ImagePixel{320, 255}));
    EXPECT_FALSE(view->following());
}

TEST_F(MapMarksTest, TheMenuKeyOpensTheMenuOfTheMiddle) {
    EXPECT_TRUE(page->keyDown(Qt::Key_Menu));
    ASSERT_NE(openMenu(), nullptr);
    EXPECT_EQ(view->menuPlace(), view->centreOnImage());
    openMenu()->close();
}

TEST_F(MapMarksTest, BesideTheImageAndWithoutAPlacedOneThereIsNoMenu) {
    view->showPixel({0, 0});
    pressRight(69, 70);
    EXPECT_EQ(openMenu(), nullptr);
    pressRight(70, 69);
    EXPECT_EQ(openMenu(), nullptr);
    pressRight(70, 70);
    ASSERT_NE(openMenu(), nullptr);
    openMenu()->close();
    view->showPixel({599, 549});
    pressRight(71, 70);
    EXPECT_EQ(openMenu(), nullptr);
    view->takeOffEarth();
    pressRight(70, 70);
    EXPECT_EQ(openMenu(), nullptr);
}

TEST_F(MapMarksTest, AFingerThatTremblesKeepsFollowingOn) {
    publish(300, 275);
    view->follow();
    press(70, 70);
    freezeTimer();
    moveTo(72, 71);
    EXPECT_FALSE(view->following()) << "a drag ends it";
    hold();
    ASSERT_NE(openMenu(), nullptr);
    EXPECT_TRUE(view->following());
    EXPECT_EQ(view->centrePixel(), (ImagePixel{300, 275}));
    expectName(QStringLiteral("Mark 1"), QString());
    choose(QStringLiteral("Add Mark Here"));
    EXPECT_EQ(newest(), (ImagePixel{300, 275})) << "the pixel that was pressed";
    press(70, 70);
    freezeTimer();
    moveTo(90, 70);
    hold();
    lift(90, 70);
    EXPECT_FALSE(view->following()) << "that was a drag";
}

TEST_F(MapMarksTest, APlaceKeepsItsMarkWhileTheMapMovesOn) {
    publish(300, 275);
    view->follow();
    pressRight(90, 50);
    publish(200, 100);
    expectName(QStringLiteral("Mark 1"), QString());
    choose(QStringLiteral("Add Mark Here"));
    EXPECT_EQ(newest(), (ImagePixel{320, 255}));
}

TEST_F(MapMarksTest, TheListIsSortedFromTheUserOrElseFromTheMiddle) {
    addMark(200, 200, QStringLiteral("A"));
    addMark(300, 270, QStringLiteral("B"));
    script.expect(QStringLiteral("Marks"), [](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QListWidget*>()->item(0)->text(), QStringLiteral("B"));
    });
    EXPECT_TRUE(view->command(kMarks, clicked));
    publish(200, 210);
    script.expect(QStringLiteral("Marks"), [](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QListWidget*>()->item(0)->text(), QStringLiteral("A"));
    });
    EXPECT_TRUE(view->command(kMarks, clicked));
}

TEST_F(MapMarksTest, GoingToAMarkEndsFollowing) {
    publish(100, 100);
    view->follow();
    addMark(200, 200, QStringLiteral("A"));
    script.expect(QStringLiteral("Marks"), [](QDialog& dialog) {
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    EXPECT_TRUE(view->command(kMarks, clicked));
    EXPECT_EQ(view->centrePixel(), (ImagePixel{200, 200}));
    EXPECT_FALSE(view->following());
    publish(101, 100);
    EXPECT_EQ(view->centrePixel(), (ImagePixel{200, 200}));
}

} // namespace
} // namespace raincast
