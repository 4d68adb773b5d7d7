// SPDX-License-Identifier: MIT
#include "core/busy_guard.h"
#include "page/page_stylus.h"
#include "page_window.h"
#include "window/screen_metrics.h"

#include <QPointingDevice>

#include <gmock/gmock.h>

namespace raincast {
namespace {

using test::NotingItem;
using testing::ElementsAre;
using testing::IsEmpty;

class PageStylusTest : public test::PageTest {
protected:
    void layoutMode() { page->command(kToggleLayout, 0); }
    [[nodiscard]] int grip() const { return ScreenMetrics::current().highResolution() ? 24 : 12; }
};

TEST_F(PageStylusTest, TheGripDoublesOnAHighResolutionScreen) {
    ScreenMetrics metrics;
    metrics.logPixelsY = 120;
    ScreenMetrics::use(metrics);
    EXPECT_EQ(PageStylus(*page).gripSize(), 12);
    metrics.logPixelsY = 121;
    ScreenMetrics::use(metrics);
    EXPECT_EQ(PageStylus(*page).gripSize(), 24);
    metrics.logPixelsY = 96;
    metrics.devicePixelRatio = 1.5;
    ScreenMetrics::use(metrics);
    EXPECT_EQ(PageStylus(*page).gripSize(), 24);
    ScreenMetrics::use(std::nullopt);
}

TEST_F(PageStylusTest, APressOnTheItemMovesIt) {
    NotingItem& item = add({20, 30, 120, 130});
    showPage();
    layoutMode();
    press(30, 40);
    moveTo(33, 45);
    moveTo(40, 50);
    EXPECT_EQ(item.rectangle(), (PageRectangle{30, 40, 130, 140}));
    lift(40, 50);
    mouse(QEvent::MouseMove, 90, 90, Qt::NoButton, Qt::NoButton, {});
    EXPECT_EQ(item.rectangle(), (PageRectangle{30, 40, 130, 140}));
    EXPECT_EQ(page->selected(), &item);
}

TEST_F(PageStylusTest, APressInTheCornersSquareResizesIt) {
    NotingItem& item = add({20, 30, 120, 130});
    showPage();
    layoutMode();
    press(120 - grip(), 130 - grip());
    moveTo(125 - grip(), 150 - grip());
    EXPECT_EQ(item.rectangle(), (PageRectangle{20, 30, 125, 150}));
    lift(125 - grip(), 150 - grip());
    press(124, 149);
    moveTo(123, 148);
    EXPECT_EQ(item.rectangle(), (PageRectangle{20, 30, 124, 149}));
}

TEST_F(PageStylusTest, APressBesideTheCornersSquareMovesIt) {
    NotingItem& item = add({20, 30, 120, 130});
    showPage();
    layoutMode();
    press(120 - grip() - 1, 129);
    moveTo(120 - grip(), 130);
    EXPECT_EQ(item.rectangle(), (PageRectangle{21, 31, 121, 131}));
    lift(120 - grip(), 130);
    press(120, 131 - grip() - 1);
    moveTo(119, 129 - grip());
    EXPECT_EQ(item.rectangle(), (PageRectangle{20, 30, 120, 130}));
}

TEST_F(PageStylusTest, ResizingEndsAtTheGripAndAtThePage) {
    NotingItem& item = add({20, 30, 120, 130});
    showPage();
    layoutMode();
    press(119, 129);
    moveTo(-100, -100);
    EXPECT_EQ(item.rectangle(), (PageRectangle{20, 30, 20 + grip(), 30 + grip()}));
    moveTo(1000, 1000);
    EXPECT_EQ(item.rectangle(), (PageRectangle{20, 30, kWidth, kHeight}));
    EXPECT_EQ(item.placement().hAnchor, Anchor::farEdge);
}

TEST_F(PageStylusTest, MovingStopsAtThePagesEdges) {
    NotingItem& item = add({20, 30, 120, 130});
    showPage();
    layoutMode();
    press(60, 60);
    moveTo(500, 500);
    EXPECT_EQ(item.rectangle(), (PageRectangle{kWidth - 100, kHeight - 100, kWidth, kHeight}));
    moveTo(-500, -500);
    EXPECT_EQ(item.rectangle(), (PageRectangle{0, 0, 100, 100}));
}

TEST_F(PageStylusTest, AnItemLargerThanThePageIsPinnedToTheTopLeft) {
    NotingItem& item = add({-10, -20, 400, 500});
    showPage();
    layoutMode();
    press(60, 60);
    moveTo(61, 61);
    EXPECT_EQ(item.rectangle(), (PageRectangle{0, 0, 410, 520}));
}

TEST_F(PageStylusTest, AMovedItemIsPaintedAtItsNewPlace) {
    add({20, 30, 60, 70});
    showPage();
    layoutMode();
    press(30, 40);
    const QColor base = page->widget()->palette().color(QPalette::Base);
    EXPECT_EQ(at(65, 75), base);
    moveTo(40, 50);
    EXPECT_EQ(at(65, 75), QColor(Qt::blue));
    EXPECT_EQ(at(25, 35), base);
}

TEST_F(PageStylusTest, ATouchThatTheSystemTakesEndsTheDragAndTapsNothing) {
    static QPointingDevice* const touchScreen = QTest::createTouchDevice();
    NotingItem& item = add({20, 30, 120, 130});
    item.captures = true;
    showPage();
    log.clear();
    const auto finger = [&](int x, int y) { return inWindow(x, y).toPoint(); };
    for (const bool layout : {false, true}) {
        QTest::touchEvent(&m_window, touchScreen).press(0, finger(60, 60));
        QTouchEvent taken(QEvent::TouchCancel, touchScreen);
        QCoreApplication::sendEvent(page->widget(), &taken);
        QTest::touchEvent(&m_window, touchScreen).move(0, finger(90, 90));
        hold(); // and it does not become a menu either
        QTest::touchEvent(&m_window, touchScreen).release(0, finger(90, 90));
        EXPECT_EQ(item.rectangle(), (PageRectangle{20, 30, 120, 130}));
        if (!layout) {
            EXPECT_THAT(log, ElementsAre(testing::StartsWith(" down"), " lost"));
        } else {
            EXPECT_THAT(log, IsEmpty());
        }
        layoutMode();
        log.clear();
    }
}

TEST_F(PageStylusTest, InLayoutModeItemsAreNotTapped) {
    NotingItem& item = add({20, 30, 120, 130});
    item.captures = true;
    showPage();
    layoutMode();
    log.clear();
    press(60, 60);
    moveTo(61, 61);
    lift(61, 61);
    EXPECT_THAT(log, ElementsAre(" rectangle"));
}

TEST_F(PageStylusTest, APressBesideAllItemsSelectsNone) {
    add({20, 30, 120, 130});
    showPage();
    layoutMode();
    tap(60, 60);
    EXPECT_NE(page->selected(), nullptr);
    tap(19, 60);
    EXPECT_EQ(page->selected(), nullptr);
}

TEST_F(PageStylusTest, TheTopmostItemHasTheTap) {
    NotingItem& below = add({20, 30, 120, 130}, Qt::blue, "below");
    NotingItem& above = add({20, 30, 120, 130}, Qt::red, "above");
    below.captures = above.captures = true;
    showPage();
    log.clear();
    press(22, 33, Qt::ShiftModifier);
    moveTo(5, 5);
    lift(5, 5);
    EXPECT_THAT(log, ElementsAre("above down 2,3 shift", "above move -15,-25", "above up -15,-25"));
    EXPECT_EQ(page->selected(), &above);
}

TEST_F(PageStylusTest, ATapThatIsNotCapturedIsOfferedToTheItemBeneath) {
    NotingItem& bottom = add({20, 30, 120, 130}, Qt::blue, "bottom");
    add({0, 0, 10, 10}, Qt::blue, "elsewhere");
    add({10, 20, 120, 130}, Qt::red, "top");
    bottom.captures = true;
    showPage();
    log.clear();
    tap(30, 40);
    EXPECT_THAT(log, ElementsAre("top down 20,20", "bottom down 10,10", "bottom up 10,10"));
    EXPECT_EQ(page->selected(), &bottom);
}

TEST_F(PageStylusTest, ATapThatNobodyCapturesSelectsNothing) {
    NotingItem& item = add({20, 30, 120, 130});
    showPage();
    log.clear();
    tap(30, 40);
    moveTo(31, 41);
    EXPECT_THAT(log, ElementsAre(" down 10,10"));
    EXPECT_EQ(page->selected(), nullptr);
    item.captures = true;
    tap(30, 40);
    EXPECT_EQ(page->selected(), &item);
}

TEST_F(PageStylusTest, TheSecondFastPressIsAPress) {
    NotingItem& item = add({20, 30, 120, 130});
    item.captures = true;
    showPage();
    log.clear();
    tap(30, 40);
    QMouseEvent second(
        QEvent::MouseButtonDblClick, QPointF(), inWindow(30, 40), QPointF(), Qt::LeftButton,
        Qt::LeftButton, Qt::NoModifier
    );
    QCoreApplication::sendEvent(page->widget(), &second);
    EXPECT_THAT(log, ElementsAre(" down 10,10", " up 10,10", " down 10,10"));
}

TEST_F(PageStylusTest, AnItemMayTakeTheSecondFastPressForGood) {
    NotingItem& item = add({20, 30, 120, 130});
    item.captures = true;
    item.takesDoublePress = true;
    showPage();
    log.clear();
    tap(30, 40);
    pressAgain(30, 40);
    moveTo(35, 45);
    lift(35, 45);
    EXPECT_THAT(log, ElementsAre(" down 10,10", " up 10,10", " double 10,10"));
}

TEST_F(PageStylusTest, OtherButtonsAndAHoveringPointerDoNothing) {
    NotingItem& item = add({20, 30, 120, 130});
    item.captures = true;
    showPage();
    log.clear();
    mouse(QEvent::MouseButtonPress, 30, 40, Qt::RightButton, Qt::RightButton, {});
    mouse(QEvent::MouseMove, 31, 41, Qt::NoButton, Qt::RightButton, {});
    mouse(QEvent::MouseButtonRelease, 31, 41, Qt::RightButton, Qt::NoButton, {});
    mouse(QEvent::MouseMove, 32, 42, Qt::NoButton, Qt::NoButton, {});
    mouse(QEvent::MouseButtonPress, 30, 40, Qt::MiddleButton, Qt::MiddleButton, {});
    EXPECT_THAT(log, ElementsAre(" menu 10,10")) << "which it has not";
}

TEST_F(PageStylusTest, AnotherButtonDoesNotEndADrag) {
    NotingItem& item = add({20, 30, 120, 130});
    item.captures = true;
    showPage();
    log.clear();
    press(30, 40);
    mouse(QEvent::MouseButtonPress, 30, 40, Qt::RightButton, Qt::LeftButton | Qt::RightButton, {});
    mouse(QEvent::MouseButtonRelease, 30, 40, Qt::RightButton, Qt::LeftButton, {});
    moveTo(31, 41);
    EXPECT_THAT(log, ElementsAre(" down 10,10", " move 11,11"));
}

TEST_F(PageStylusTest, PointerEventsEndAtThePage) {
    class Parent : public QObject {
    public:
        int presses = 0;
        bool eventFilter(QObject*, QEvent* event) override {
            presses += event->type() == QEvent::MouseButtonPress ? 1 : 0;
            return false;
        }
    } parent;
    m_client.installEventFilter(&parent);
    showPage();
    tap(30, 40);
    EXPECT_EQ(parent.presses, 0);
}

TEST_F(PageStylusTest, AnItemDeletedDuringItsDragIsLeftAlone) {
    NotingItem& item = add({20, 30, 120, 130});
    item.captures = true;
    showPage();
    press(30, 40);
    page->command(kDeleteItem, 0);
    log.clear();
    moveTo(31, 41);
    lift(31, 41);
    EXPECT_THAT(log, IsEmpty());
}

class PageTouchTest : public PageStylusTest {
protected:
    // Two fingers around a place; or one.
    void fingers(QEvent::Type type, std::vector<QPoint> places) {
        static auto* const device = QTest::createTouchDevice();
        QList<QEventPoint> points;
        for (std::size_t i = 0; i < places.size(); ++i) {
            const QPointF place = inWindow(places[i].x(), places[i].y());
            points.append(QEventPoint(
                static_cast<int>(i),
                type == QEvent::TouchEnd ? QEventPoint::Released : QEventPoint::Updated, place,
                m_window.mapToGlobal(place)
            ));
        }
        QTouchEvent event(type, device, Qt::NoModifier, points);
        QCoreApplication::sendEvent(page->widget(), &event);
        EXPECT_TRUE(event.isAccepted());
    }
};

TEST_F(PageTouchTest, AFingerIsAStylus) {
    NotingItem& item = add({20, 30, 120, 130});
    item.captures = true;
    showPage();
    log.clear();
    fingers(QEvent::TouchBegin, {{30, 40}});
    fingers(QEvent::TouchUpdate, {{34, 46}});
    fingers(QEvent::TouchEnd, {{34, 46}});
    EXPECT_THAT(log, ElementsAre(" down 10,10", " move 14,16", " up 14,16"));
}

TEST_F(PageTouchTest, AFingerMovesItemsInLayoutMode) {
    NotingItem& item = add({20, 30, 120, 130});
    showPage();
    layoutMode();
    fingers(QEvent::TouchBegin, {{30, 40}});
    fingers(QEvent::TouchUpdate, {{34, 46}});
    EXPECT_EQ(item.rectangle(), (PageRectangle{24, 36, 124, 136}));
}

TEST_F(PageTouchTest, APinchZoomsTheTopmostItemBetweenTheFingers) {
    add({0, 0, 240, 300}, Qt::blue, "below").takesCommands = true;
    add({100, 100, 140, 140}, Qt::red, "above").takesCommands = true;
    showPage();
    log.clear();
    fingers(QEvent::TouchBegin, {{110, 120}, {130, 120}});
    fingers(QEvent::TouchUpdate, {{110, 120}, {130, 120}});
    fingers(QEvent::TouchUpdate, {{100, 120}, {140, 120}});
    EXPECT_THAT(log, ElementsAre("above command 40030 0"));
    fingers(QEvent::TouchUpdate, {{110, 120}, {130, 120}});
    EXPECT_THAT(log, ElementsAre("above command 40030 0", "above command 40031 0"));
}

// --- Held presses and the right button ----------------------------------------------------------

constexpr MenuRow kRows[] = {menuEntry(40999, "&Choice")};

class PageStylusHoldTest : public PageStylusTest {
protected:
    NotingItem& item = add({20, 30, 120, 130});

    PageStylusHoldTest() {
        item.captures = true;
        item.menuRows = kRows;
        showPage();
        log.clear();
    }
    ~PageStylusHoldTest() override {
        if (openMenu() != nullptr) {
            openMenu()->close();
        }
    }
};

TEST_F(PageStylusHoldTest, APressThatIsHeldOpensTheItemsMenu) {
    press(30, 40);
    EXPECT_TRUE(QTest::qWaitFor([] { return openMenu() != nullptr; }, 20000));
    EXPECT_THAT(log, ElementsAre(" down 10,10", " menu 10,10", " lost"));
    lift(30, 40);
    EXPECT_NE(openMenu(), nullptr) << "the finger may go now";
    EXPECT_EQ(log.size(), 3U) << "and the item hears no more of it";
    choose(QStringLiteral("Choice"));
    EXPECT_EQ(log.back(), " command 40999 0");
    EXPECT_EQ(openMenu(), nullptr);
}

TEST_F(PageStylusHoldTest, ItTakesAllOfTheTime) {
    press(30, 40);
    freezeTimer();
    hold(PageStylus::kHolds - 1);
    EXPECT_EQ(openMenu(), nullptr);
    hold(1);
    EXPECT_NE(openMenu(), nullptr);
    EXPECT_EQ(PageStylus::kHolds * PageStylus::kHoldMilliseconds, 600);
}

TEST_F(PageStylusHoldTest, ATapIsNotHeld) {
    press(30, 40);
    freezeTimer();
    hold(2);
    lift(30, 40);
    hold();
    EXPECT_EQ(openMenu(), nullptr);
    EXPECT_THAT(log, ElementsAre(" down 10,10", " up 10,10"));
}

TEST_F(PageStylusHoldTest, AFingerMayTrembleButNotMove) {
    const int tremble = grip() / 2;
    press(50, 60);
    freezeTimer();
    moveTo(50 + tremble, 60 - tremble);
    hold();
    EXPECT_NE(openMenu(), nullptr);
    openMenu()->close();
    lift(50, 60);
    log.clear();
    press(50, 60);
    freezeTimer();
    moveTo(50, 61 + tremble);
    moveTo(50, 60); // there and back is a way too
    hold();
    EXPECT_EQ(openMenu(), nullptr);
    moveTo(70, 80);
    lift(70, 80);
    EXPECT_THAT(
        log, ElementsAre(
                 " down 30,30", " move 30," + std::to_string(31 + tremble), " move 30,30",
                 " move 50,50", " up 50,50"
             )
    ) << "it is a drag as ever";
}

TEST_F(PageStylusHoldTest, WithoutAMenuAHeldPressIsAPress) {
    item.menuRows = {};
    press(30, 40);
    freezeTimer();
    hold(2 * PageStylus::kHolds);
    EXPECT_EQ(openMenu(), nullptr);
    moveTo(31, 40);
    lift(31, 40);
    EXPECT_THAT(log, ElementsAre(" down 10,10", " menu 10,10", " move 11,10", " up 11,10"));
}

TEST_F(PageStylusHoldTest, ATransferKeepsThePressFromBeingHeld) {
    press(30, 40);
    freezeTimer();
    hold(2);
    {
        const BusyGuard busy;
        page->startTimer(PageStylus::kHoldTimer, 0);
        for (int i = 0; i < 2 * PageStylus::kHolds; ++i) {
            QCoreApplication::processEvents(); // the timer is due at each
        }
        freezeTimer();
    }
    hold(PageStylus::kHolds - 3);
    EXPECT_EQ(openMenu(), nullptr);
    hold(1);
    EXPECT_NE(openMenu(), nullptr);
}

TEST_F(PageStylusHoldTest, InLayoutModePressesMoveItems) {
    layoutMode();
    press(50, 60);
    hold();
    EXPECT_EQ(openMenu(), nullptr);
    moveTo(52, 60);
    lift(52, 60);
    EXPECT_EQ(item.rectangle(), (PageRectangle{22, 30, 122, 130}));
    pressRight(50, 60);
    EXPECT_EQ(openMenu(), nullptr);
}

TEST_F(PageStylusHoldTest, TheRightButtonOpensTheMenuAtOnce) {
    pressRight(33, 47);
    ASSERT_NE(openMenu(), nullptr);
    EXPECT_THAT(log, ElementsAre(" menu 13,17"));
    EXPECT_EQ(openMenu()->pos(), toScreen(*page->widget(), {33, 47}));
    choose(QStringLiteral("Choice"));
    EXPECT_EQ(log.back(), " command 40999 0");
}

TEST_F(PageStylusHoldTest, TheRightButtonDoesNotDisturbADrag) {
    press(30, 40);
    freezeTimer();
    mouse(QEvent::MouseButtonPress, 30, 40, Qt::RightButton, Qt::LeftButton | Qt::RightButton, {});
    EXPECT_EQ(openMenu(), nullptr);
    lift(30, 40);
    EXPECT_THAT(log, ElementsAre(" down 10,10", " up 10,10"));
}

TEST_F(PageStylusHoldTest, AFingerOpensTheMenuToo) {
    const std::unique_ptr<QPointingDevice> screen(QTest::createTouchDevice());
    QWidget& window = *page->widget();
    const QPoint place = window.mapFromGlobal(toScreen(window, {40, 60}));
    QTest::touchEvent(&window, screen.get()).press(0, place, &window);
    freezeTimer();
    hold();
    ASSERT_NE(openMenu(), nullptr);
    EXPECT_THAT(
        log, ElementsAre(testing::StartsWith(" down"), testing::StartsWith(" menu"), " lost")
    );
    QTest::touchEvent(&window, screen.get()).release(0, place, &window);
    EXPECT_NE(openMenu(), nullptr) << "until an entry is touched";
    openMenu()->close();
    test::settle();
    log.clear();
    QTest::touchEvent(&window, screen.get()).press(0, place, &window);
    freezeTimer();
    QTest::touchEvent(&window, screen.get())
        .stationary(0)
        .press(1, place + QPoint(20, 20), &window);
    hold();
    EXPECT_EQ(openMenu(), nullptr) << "two fingers zoom";
    QTest::touchEvent(&window, screen.get())
        .release(0, place, &window)
        .release(1, place + QPoint(20, 20), &window);
}

} // namespace
} // namespace raincast
