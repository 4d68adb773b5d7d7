// SPDX-License-Identifier: MIT
#include "core/replay_clock.h"
#include "map/mark_manager.h"
#include "player/loop_setting.h"
#include "support/dialog_script.h"
#include "support/manual_timers.h"
#include "support/pointer.h"
#include "support/qt_app.h"
#include "support/test_clock.h"
#include "support/time_zone.h"
#include "warnings/warning_watch.h"
#include "window/commands.h"
#include "window/screen_metrics.h"

#include <QAbstractButton>
#include <QPlainTextEdit>
#include <QToolButton>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

const FileTime kNow = fromCalendar({2026, 11, 22, 19, 42});
constexpr FileTime kMinute = kFileTimePerMinute;

/// Of a square degree whose south-west corner is at 35 north and a meridian.
WarningText warningAt(double west, const QString& event, const QString& id, FileTime end) {
    WarningText warning;
    warning.id = id;
    warning.event = event;
    warning.text = event + QStringLiteral(" of %1").arg(id);
    warning.end = end;
    warning.polygons = {{{{35, west}, {35, west + 1}, {36, west + 1}, {36, west}}}};
    return warning;
}

WarningText tornado(double west = -98) {
    return warningAt(west, "Tornado Warning", "OUN.TO.W.0001", kNow + 33 * kMinute);
}

WarningText thunderstorm(double west = -98) {
    return warningAt(west, "Severe Thunderstorm Warning", "OUN.SV.W.0002", kNow + 18 * kMinute);
}

class WarningWatchTest : public test::GuiTest {
protected:
    WarningWatchTest() : m_clock(kNow) {
        m_window.resize(400, 300);
        m_window.setBackgroundRole(QPalette::Base); // as the main window's is
        test::show(m_window);
        m_page.activate(m_window, true);
        test::settle();
    }
    ~WarningWatchTest() override {
        LoopSetting::setUtc(false);
        m_page.deactivate();
    }

    void know(std::vector<WarningText> warnings, const QString& site = "TLX") {
        knowWith(false, std::move(warnings), site, "live");
    }
    void knowWith(
        bool isSample, std::vector<WarningText> warnings, const QString& site, const QString& source
    ) {
        auto texts = std::make_shared<WarningTexts>();
        texts->isSample = isSample;
        texts->warnings = std::move(warnings);
        m_watch.take({source, site, "Short", texts, m_clock.now()});
    }
    static void beAt(double latitude, double longitude) {
        CDataGPSPosition position;
        position.latitude = latitude;
        position.longitude = longitude;
        position.fixType = kFixGps;
        Listener<CDataGPSPosition>::Notify(position);
    }
    /// What the bar says; empty while there is none.
    std::string said() {
        test::settle();
        auto* const bar = m_window.findChild<QWidget*>("warningBar");
        if (bar == nullptr || !bar->isVisible()) {
            EXPECT_EQ(m_page.coveredTop(), 0);
            return {};
        }
        EXPECT_EQ(bar->pos(), QPoint(0, 0));
        EXPECT_EQ(bar->width(), m_window.width());
        EXPECT_EQ(m_page.coveredTop(), bar->height());
        return words().accessibleName().toStdString();
    }
    QAbstractButton& words() { return *m_window.findChild<QAbstractButton*>("warningWords"); }
    QToolButton& dismissButton() { return *m_window.findChild<QToolButton*>("dismissWarning"); }
    void passTo(FileTime time) {
        m_clock.set(time);
        EXPECT_GE(m_timers.fire(), 0);
    }

    const TimeZone m_zone{"UTC0"};
    TestClock m_clock;
    ManualTimers m_timers;
    int m_beeps = 0;
    CMarkManager m_marks;
    WarningWatch m_watch{m_marks, m_timers, [this] { ++m_beeps; }};
    QWidget m_window;
    CPageDisplay m_page;
};

constexpr char kForPosition[] = "Tornado Warning for your position until 20:15";

TEST_F(WarningWatchTest, WarnsOfWhatHoldsAtTheUsersPosition) {
    know({tornado()});
    EXPECT_EQ(said(), "");
    beAt(35.5, -97.5);
    EXPECT_EQ(said(), kForPosition);
    EXPECT_EQ(m_beeps, 1);
    const QImage seen = m_window.findChild<QWidget*>("warningBar")->grab().toImage();
    EXPECT_EQ(seen.pixel(1, 1), QColor(255, 0, 0).rgb());
}

TEST_F(WarningWatchTest, WarnsWhenTheWarningComesLater) {
    beAt(35.5, -97.5);
    know({});
    EXPECT_EQ(said(), "");
    know({tornado()});
    EXPECT_EQ(said(), kForPosition);
    EXPECT_EQ(m_beeps, 1);
}

TEST_F(WarningWatchTest, FollowsThePositionOutAndInAgainWithOneBeep) {
    know({tornado()});
    beAt(35.5, -97.5);
    beAt(34.5, -97.5);
    EXPECT_EQ(said(), "");
    EXPECT_TRUE(m_timers.running().empty());
    beAt(35.5, -97.5);
    EXPECT_EQ(said(), kForPosition);
    EXPECT_EQ(m_beeps, 1);
}

// The last place counts while the receiver has lost its position.
TEST_F(WarningWatchTest, StaysWhileThePositionIsLost) {
    know({tornado()});
    beAt(35.5, -97.5);
    CDataGPSPosition lost;
    Listener<CDataGPSPosition>::Notify(lost);
    EXPECT_EQ(said(), kForPosition);
}

TEST_F(WarningWatchTest, FollowsTheTargetMark) {
    know({tornado()});
    const COverlayMark& far = m_marks.add({30, -97.5}, "Far");
    const COverlayMark& near = m_marks.add({35.5, -97.5}, "Near");
    m_marks.setTarget(far);
    EXPECT_EQ(said(), "");
    m_marks.setTarget(near);
    EXPECT_EQ(said(), "Tornado Warning for your target until 20:15");
    EXPECT_EQ(m_beeps, 1);
    m_marks.setTarget(far);
    EXPECT_EQ(said(), "");
    m_marks.setTarget(near);
    EXPECT_NE(said(), "");
    m_marks.remove(near);
    EXPECT_EQ(said(), "");
    EXPECT_EQ(m_beeps, 1);
}

TEST_F(WarningWatchTest, AWarningOfTheTargetThatComesOverTheUserIsAnotherOne) {
    know({tornado()});
    m_marks.setTarget(m_marks.add({35.5, -97.5}, "Near"));
    EXPECT_TRUE(m_watch.dismiss());
    EXPECT_EQ(said(), "");
    beAt(35.6, -97.5);
    EXPECT_EQ(said(), kForPosition);
    EXPECT_EQ(m_beeps, 2);
    EXPECT_TRUE(m_watch.dismiss());
    beAt(34, -97.5);
    EXPECT_EQ(said(), "") << "the user knows of it";
    EXPECT_EQ(m_beeps, 2);
}

TEST_F(WarningWatchTest, WhoHasDismissedItForThePositionKnowsOfItAtTheTarget) {
    know({tornado()});
    m_marks.setTarget(m_marks.add({35.5, -97.5}, "Near"));
    beAt(35.6, -97.5);
    EXPECT_TRUE(m_watch.dismiss());
    beAt(34, -97.5);
    EXPECT_EQ(said(), "");
}

TEST_F(WarningWatchTest, TheMostDangerousComesFirst) {
    know({thunderstorm(), tornado()});
    beAt(35.5, -97.5);
    EXPECT_EQ(said(), std::string(kForPosition) + ", and 1 more");
    EXPECT_EQ(m_beeps, 1);
    EXPECT_TRUE(m_watch.dismiss());
    EXPECT_EQ(said(), "Severe Thunderstorm Warning for your position until 20:00");
    EXPECT_EQ(m_beeps, 1) << "both have been announced";
    EXPECT_TRUE(m_watch.dismiss());
    EXPECT_EQ(said(), "");
    EXPECT_FALSE(m_watch.warns());
    EXPECT_FALSE(m_watch.dismiss());
}

TEST_F(WarningWatchTest, GoesWithoutAnythingElseWhenItEnds) {
    know({tornado(), thunderstorm()});
    beAt(35.5, -97.5);
    ASSERT_THAT(m_timers.running(), testing::ElementsAre(18 * 60'000 + 1));
    passTo(kNow + 18 * kMinute);
    EXPECT_EQ(said(), kForPosition);
    ASSERT_THAT(m_timers.running(), testing::ElementsAre(15 * 60'000 + 1));
    passTo(kNow + 33 * kMinute - 1);
    EXPECT_EQ(said(), kForPosition) << "the alarm was early";
    passTo(kNow + 33 * kMinute);
    EXPECT_EQ(said(), "");
    EXPECT_TRUE(m_timers.running().empty());
}

TEST_F(WarningWatchTest, GoesWhenTheComputerHasSleptOverItsEnd) {
    CHeartbeat::program().Beat();
    know({tornado()});
    beAt(35.5, -97.5);
    m_clock.advance(40 * kMinute);
    CHeartbeat::program().Beat();
    EXPECT_EQ(said(), "");
}

TEST_F(WarningWatchTest, AClockThatIsSetBackBringsNothingToAnEnd) {
    know({tornado()});
    beAt(35.5, -97.5);
    m_clock.set(kNow - 60 * kMinute);
    EXPECT_GE(m_timers.fire(), 0);
    EXPECT_EQ(said(), kForPosition);
    EXPECT_THAT(m_timers.running(), testing::ElementsAre(93 * 60'000 + 1));
}

TEST_F(WarningWatchTest, WithoutAnEndItHoldsForAnHour) {
    WarningText endless = tornado();
    endless.end = 0;
    know({endless});
    beAt(35.5, -97.5);
    EXPECT_EQ(said(), "Tornado Warning for your position");
    passTo(kNow + 60 * kMinute);
    EXPECT_EQ(said(), "");
}

TEST_F(WarningWatchTest, WhatIsOverIsNotSaid) {
    m_clock.set(kNow + 33 * kMinute);
    beAt(35.5, -97.5);
    know({tornado()});
    EXPECT_EQ(said(), "");
    EXPECT_EQ(m_beeps, 0);
}

// A computer's clock may be slow.
TEST_F(WarningWatchTest, WhatBeginsInAMomentIsSaidAtOnce) {
    WarningText early = tornado();
    early.begin = kNow + 3 * kMinute;
    know({early});
    beAt(35.5, -97.5);
    EXPECT_EQ(said(), kForPosition);
}

TEST_F(WarningWatchTest, ProlongedItKeepsQuiet) {
    know({tornado()});
    beAt(35.5, -97.5);
    WarningText longer = tornado();
    longer.end += 15 * kMinute;
    know({longer});
    EXPECT_EQ(said(), "Tornado Warning for your position until 20:30");
    EXPECT_EQ(m_beeps, 1);
    EXPECT_TRUE(m_watch.dismiss());
    longer.end += 15 * kMinute;
    know({longer});
    EXPECT_EQ(said(), "") << "what is dismissed stays so";
    EXPECT_EQ(m_beeps, 1);
}

TEST_F(WarningWatchTest, AnotherWarningBeepsAgain) {
    know({thunderstorm()});
    beAt(35.5, -97.5);
    EXPECT_TRUE(m_watch.dismiss());
    know({tornado()});
    EXPECT_EQ(said(), kForPosition);
    EXPECT_EQ(m_beeps, 2);
}

TEST_F(WarningWatchTest, GoesWhenTheServerTakesItBack) {
    know({tornado()});
    beAt(35.5, -97.5);
    know({});
    EXPECT_EQ(said(), "");
}

TEST_F(WarningWatchTest, StaysWhenTheServerSaysNothing) {
    know({tornado()});
    beAt(35.5, -97.5);
    m_watch.take({"live", "TLX", "Short", nullptr, kNow + kMinute});
    EXPECT_EQ(said(), kForPosition);
    know({}, "FWS");
    EXPECT_EQ(said(), kForPosition) << "another site's picture may end before it";
}

TEST_F(WarningWatchTest, WhatWasFetchedLastHolds) {
    know({tornado()}, "TLX");
    m_clock.advance(kMinute);
    WarningText longer = tornado();
    longer.end += 15 * kMinute;
    know({longer}, "FWS");
    beAt(35.5, -97.5);
    EXPECT_EQ(said(), "Tornado Warning for your position until 20:30");
    know({tornado()}, "TLX");
    EXPECT_EQ(said(), kForPosition);
}

TEST_F(WarningWatchTest, KeepsTheTextsOfSomeSites) {
    know({tornado()}, "TLX");
    for (int site = 0; site < 20; ++site) {
        m_clock.advance(1);
        know({thunderstorm(-80)}, QStringLiteral("S%1").arg(site));
    }
    beAt(35.5, -97.5);
    EXPECT_EQ(said(), "") << "the oldest went";
}

// Servers of before gave no ids.
TEST_F(WarningWatchTest, TwoOfOneIdAreBothSaid) {
    WarningText elsewhere = tornado(-80);
    know({elsewhere, tornado()});
    beAt(35.5, -97.5);
    EXPECT_EQ(said(), kForPosition);
}

TEST_F(WarningWatchTest, MadeUpWarningsAreNotSaid) {
    beAt(35.5, -97.5);
    knowWith(true, {tornado()}, "TLX", "sample");
    EXPECT_EQ(said(), "");
    EXPECT_EQ(m_beeps, 0);
}

TEST_F(WarningWatchTest, AnotherSourceTakesAllAway) {
    know({tornado()});
    beAt(35.5, -97.5);
    m_watch.take({"sample", "TLX", "Short", nullptr, 0});
    EXPECT_EQ(said(), "");
}

TEST_F(WarningWatchTest, OfAReplayItSaysSoAndGoesByItsClockWithoutABeep) {
    const Replay replay{kNow, 10};
    m_clock.set(fromCalendar({2026, 11, 25, 12, 0}));
    const ReplayClock past(replay, m_clock.now());
    Clock::replayBy(&past);
    beAt(35.5, -97.5);
    knowWith(false, {tornado()}, "TLX", "replay");
    EXPECT_EQ(said(), std::string("Replay: ") + kForPosition);
    EXPECT_EQ(m_beeps, 0);
    EXPECT_THAT(m_timers.running(), testing::ElementsAre(33 * 6'000 + 1));
    m_clock.advance(33 * kMinute / 10);
    EXPECT_GE(m_timers.fire(), 0);
    EXPECT_EQ(said(), "");
    Clock::replayBy(nullptr);
    // A warning of another year may have the same number.
    m_clock.set(kNow);
    know({tornado()});
    EXPECT_EQ(said(), kForPosition);
    EXPECT_EQ(m_beeps, 1);
}

TEST_F(WarningWatchTest, TimesFollowTheUsersZone) {
    know({tornado()});
    beAt(35.5, -97.5);
    LoopSetting::setUtc(true);
    EXPECT_EQ(said(), std::string(kForPosition) + " UTC");
}

TEST_F(WarningWatchTest, LayoutModeHidesTheBar) {
    know({tornado()});
    beAt(35.5, -97.5);
    EXPECT_TRUE(m_page.command(kToggleLayout, 0));
    EXPECT_EQ(said(), "");
    EXPECT_TRUE(m_page.command(kToggleLayout, 0));
    EXPECT_EQ(said(), kForPosition);
}

TEST_F(WarningWatchTest, ComesAlongToAnotherPageAndBack) {
    know({tornado()});
    beAt(35.5, -97.5);
    m_page.deactivate();
    CPageDisplay other;
    other.activate(m_window, true);
    EXPECT_EQ(m_window.findChildren<QWidget*>("warningBar").size(), 1);
    test::settle();
    EXPECT_TRUE(m_window.findChild<QWidget*>("warningBar")->isVisible());
    EXPECT_GT(other.coveredTop(), 0);
    other.deactivate();
    m_page.activate(m_window, true);
    EXPECT_EQ(said(), kForPosition);
    EXPECT_EQ(m_beeps, 1);
}

TEST_F(WarningWatchTest, BeepsWithoutAPageToo) {
    m_page.deactivate();
    know({tornado()});
    beAt(35.5, -97.5);
    EXPECT_EQ(m_beeps, 1);
}

TEST_F(WarningWatchTest, TheBarIsAsWideAsTheWindow) {
    know({tornado()});
    beAt(35.5, -97.5);
    EXPECT_NE(said(), "");
    const int oneLine = m_page.coveredTop();
    m_window.resize(180, 300);
    m_page.size(180, 300);
    EXPECT_NE(said(), "");
    EXPECT_GT(m_page.coveredTop(), oneLine) << "its words need more lines";
}

TEST_F(WarningWatchTest, AClickDismissesIt) {
    know({tornado(), thunderstorm()});
    beAt(35.5, -97.5);
    EXPECT_NE(said(), "");
    test::click(dismissButton(), dismissButton().rect().center());
    EXPECT_EQ(said(), "Severe Thunderstorm Warning for your position until 20:00");
    test::click(dismissButton(), dismissButton().rect().center());
    EXPECT_EQ(said(), "");
}

TEST_F(WarningWatchTest, TheKeyboardComesToItsButtons) {
    know({tornado()});
    beAt(35.5, -97.5);
    EXPECT_NE(said(), "");
    m_window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
    QTest::keyClick(&m_window, Qt::Key_Tab);
    EXPECT_TRUE(words().hasFocus());
    QTest::keyClick(&words(), Qt::Key_Tab);
    EXPECT_TRUE(dismissButton().hasFocus());
    QTest::keyClick(&dismissButton(), Qt::Key_Space);
    EXPECT_EQ(said(), "");
}

TEST_F(WarningWatchTest, ItsWordsOpenTheWholeText) {
    know({tornado()});
    beAt(35.5, -97.5);
    EXPECT_NE(said(), "");
    test::DialogScript script;
    script.expect("Warning", [](QDialog& dialog) {
        const QString text = dialog.findChild<QPlainTextEdit*>()->toPlainText();
        EXPECT_EQ(text, "Tornado Warning until 20:15\n\nTornado Warning of OUN.TO.W.0001");
    });
    test::click(words(), words().rect().center());
}

TEST_F(WarningWatchTest, AFingerCanHitItsButtons) {
    ScreenMetrics screen = ScreenMetrics::current();
    screen.touch = true;
    ScreenMetrics::use(screen);
    know({tornado()});
    beAt(35.5, -97.5);
    EXPECT_NE(said(), "");
    EXPECT_GE(dismissButton().width(), screen.touchHeight());
    EXPECT_GE(dismissButton().height(), screen.touchHeight());
    EXPECT_GE(words().height(), screen.touchHeight());
    ScreenMetrics::use(std::nullopt);
}

} // namespace
} // namespace raincast
