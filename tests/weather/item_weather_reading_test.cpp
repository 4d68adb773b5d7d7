// SPDX-License-Identifier: MIT
// Reading the radar with mouse, finger and keys, in a real window.
#include "image/gif_writer.h"
#include "page/page_pointer.h"
#include "page/page_stylus.h"
#include "palette/nws_colours.h"
#include "position/data_gps_position.h"
#include "reading/reading_setting.h"
#include "support/menu.h"
#include "support/pointer.h"
#include "units/units.h"
#include "weather_page.h"
#include "window/events.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QMenu>
#include <QWindow>

namespace raincast {
namespace {

using test::DialogScript;
using testing::HasSubstr;

/// A storm of 45 dBZ moves east, 30 pixels from each frame to the next.
class ItemWeatherReadingTest : public test::WeatherPage {
protected:
    ItemWeatherReadingTest() {
        const char* const stamps[] = {"20190519_0534", "20190519_0544", "20190519_0554"};
        for (int frame = 0; frame < 3; ++frame) {
            m_server.serve(
                QStringLiteral("/ridge/RadarImg/N0R/MUX/MUX_%1_N0R.gif")
                    .arg(QLatin1String(stamps[frame])),
                stormAt(240 + 30 * frame)
            );
        }
        showSite();
    }
    ~ItemWeatherReadingTest() override { ReadingSetting::restore(m_setting); }

    static QByteArray stormAt(int column) {
        IndexedPicture picture;
        for (int i = 0; i < 400; ++i) {
            picture.row(265 + i / 20)[column + i % 20] = 9;
        }
        return writeGif(picture, nwsColours(Quantity::reflectivity)).value_or(QByteArray());
    }

    [[nodiscard]] QWidget& window() { return *m_page->widget(); }
    /// Where a column of the radar's row is on the page.
    [[nodiscard]] QPoint at(int column) const {
        const PagePoint point = m_item->view().toPage({column, 275});
        return {point.x, point.y};
    }
    void rest() {
        m_page->stopTimer(CPageDisplay::Pointer::kRestTimer);
        TimerEvent due(CPageDisplay::Pointer::kRestTimer);
        QCoreApplication::sendEvent(&window(), &due);
    }
    QMenu* pressRight(QPoint place) {
        QWindow* const frame = window().window()->windowHandle();
        const QPoint inFrame = window().mapTo(window().window(), place);
        QTest::mousePress(frame, Qt::RightButton, {}, inFrame);
        QTest::mouseRelease(frame, Qt::RightButton, {}, inFrame);
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }
    void choose(QPoint place, const QString& text) {
        QMenu* const menu = pressRight(place);
        ASSERT_NE(menu, nullptr);
        test::chooseInOpenMenu(*menu, text);
    }
    void tap(QPoint place) {
        test::click(window(), place);
        QTest::qWait(0);
    }
    static std::string headingOf(const QMenu& menu) {
        const auto* const label = menu.findChild<QLabel*>();
        return label != nullptr ? label->text().toStdString() : std::string();
    }

    const ReadingSetting::Kept m_setting = ReadingSetting::keep();
};

TEST_F(ItemWeatherReadingTest, WhereThePointerRestsThePictureIsRead) {
    const QImage before = drawn();
    test::moveTo(window(), at(310));
    EXPECT_EQ(drawn(), before);
    rest();
    EXPECT_NE(drawn(), before);
    test::moveTo(window(), at(312));
    EXPECT_EQ(drawn(), before);
    rest();
    EXPECT_NE(drawn(), before);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&window(), &leave);
    EXPECT_EQ(drawn(), before);
}

TEST_F(ItemWeatherReadingTest, APressTakesTheReadoutAway) {
    const QImage before = drawn();
    test::moveTo(window(), at(310));
    rest();
    test::press(window(), at(310));
    EXPECT_EQ(drawn(), before);
    test::release(window(), at(310));
}

TEST_F(ItemWeatherReadingTest, InLayoutModeNobodyReads) {
    m_page->command(kToggleLayout, 0);
    const QImage before = drawn();
    test::moveTo(window(), at(310));
    rest();
    EXPECT_EQ(drawn(), before);
    EXPECT_EQ(pressRight(at(310)), nullptr);
}

TEST_F(ItemWeatherReadingTest, TheMenuOfAPlaceBeginsWithTheReadout) {
    QMenu* const menu = pressRight(at(310));
    ASSERT_NE(menu, nullptr);
    EXPECT_THAT(headingOf(*menu), HasSubstr("45 to 49 dBZ\n"));
    EXPECT_THAT(headingOf(*menu), HasSubstr("\nFrom radar "));
    EXPECT_EQ(
        test::choicesIn(*menu), QStringList(
                                    {"Add Mark Here", "Measure From Here", "Track This Storm",
                                     "Copy Position", "Centre Here", "Set as Target"}
                                )
    );
    menu->close();
}

TEST_F(ItemWeatherReadingTest, AFingerHeldStillOpensIt) {
    test::press(window(), at(310));
    m_page->stopTimer(PageStylus::kHoldTimer);
    for (int i = 0; i < PageStylus::kHolds; ++i) {
        TimerEvent due(PageStylus::kHoldTimer);
        QCoreApplication::sendEvent(&window(), &due);
    }
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    EXPECT_THAT(headingOf(*menu), HasSubstr("45 to 49 dBZ\n"));
    test::release(window(), at(310));
    menu->close();
}

TEST_F(ItemWeatherReadingTest, TheMenuKeyOpensTheMenuOfTheMiddle) {
    EXPECT_TRUE(m_page->keyDown(Qt::Key_Menu));
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    EXPECT_THAT(headingOf(*menu), HasSubstr("45 to 49 dBZ\n"));
    menu->close();
}

TEST_F(ItemWeatherReadingTest, APositionIsCopiedAndPutInTheMiddle) {
    choose(at(310), "Copy Position");
    const auto place = m_item->positionAt({at(310).x(), at(310).y()});
    ASSERT_TRUE(place);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), CUnits::global().formatPosition(*place));
    choose(at(350), "Centre Here");
    EXPECT_NEAR(m_item->centrePixel().column, 350, 1);
}

TEST_F(ItemWeatherReadingTest, AWayIsMeasuredUntilEsc) {
    const QImage before = drawn();
    choose(at(280), "Measure From Here");
    EXPECT_NE(drawn(), before);
    const int zoom = m_item->view().zoom();
    tap(at(320));
    const QImage measured = drawn();
    EXPECT_NE(measured, before);
    test::doubleClick(window(), at(320));
    EXPECT_EQ(m_item->view().zoom(), zoom) << "taps are points meanwhile";
    EXPECT_TRUE(m_page->keyDown(Qt::Key_Escape));
    EXPECT_EQ(drawn(), before);
}

TEST_F(ItemWeatherReadingTest, StopEndsMeasuringFirst) {
    choose(at(280), "Measure From Here");
    EXPECT_TRUE(m_item->command(kStop, 0));
    EXPECT_FALSE(m_item->command(kStop, 0)) << "to all items";
}

TEST_F(ItemWeatherReadingTest, ADragWhileMeasuringMovesThePictureAndIsNoPoint) {
    choose(at(280), "Measure From Here");
    const ImagePixel origin = m_item->view().origin();
    test::press(window(), {150, 140});
    test::moveTo(window(), {100, 140});
    EXPECT_EQ(m_item->view().origin().column, origin.column + 50);
    test::release(window(), {100, 140});
}

TEST_F(ItemWeatherReadingTest, AStormIsTrackedFromTheOldestFrameToTheNewest) {
    editAnimation(3);
    tick();
    choose(at(310), "Track This Storm");
    EXPECT_EQ(shown(), "5:34");
    for (int i = 0; i < 3; ++i) {
        tick();
        EXPECT_EQ(shown(), "5:34") << "the loop rests";
    }
    const QImage asks = drawn();
    tap(at(250));
    EXPECT_EQ(shown(), "5:54");
    tap(at(310));
    const QImage tracked = drawn();
    EXPECT_NE(tracked, asks);
    tick();
    tick();
    EXPECT_NE(shown(), "5:54") << "the loop goes on";
    EXPECT_TRUE(m_page->keyDown(Qt::Key_Escape));
}

TEST_F(ItemWeatherReadingTest, WithKeysTheMiddleIsTouched) {
    editAnimation(3);
    EXPECT_TRUE(m_item->command(kTrackStorm, 0));
    EXPECT_EQ(shown(), "5:34");
    EXPECT_TRUE(m_page->keyDown(Qt::Key_Return));
    tick();
    EXPECT_EQ(shown(), "5:54");
}

TEST_F(ItemWeatherReadingTest, WithoutAnAnimationItSaysWhatIsMissing) {
    DialogScript script;
    script.expect("Track This Storm");
    EXPECT_TRUE(m_item->command(kTrackStorm, 0));
    EXPECT_EQ(shown(), "5:54");
}

TEST_F(ItemWeatherReadingTest, TheReadingMenuChecksWhatIsShown) {
    QMenu menu;
    const auto entry = [&menu](int id) {
        menu.clear();
        QAction* const action = menu.addAction("x");
        action->setData(id);
        return action;
    };
    for (const int id : {int{kShowScale}, int{kRingsRoundRadar}, int{kRingsRoundPosition}}) {
        QAction* const action = entry(id);
        m_item->menuPopUp(menu);
        EXPECT_FALSE(action->isChecked()) << id;
        EXPECT_TRUE(m_item->command(id, 0));
        m_item->menuPopUp(menu);
        EXPECT_TRUE(action->isChecked()) << id;
    }
    EXPECT_EQ(ReadingSetting::rings(), ReadingSetting::kRingsRoundPosition);
    EXPECT_TRUE(m_item->command(kRingsRoundPosition, 0));
    EXPECT_EQ(ReadingSetting::rings(), ReadingSetting::kNoRings);
}

// A page that nobody points at paints nothing.
TEST_F(ItemWeatherReadingTest, APageAtRestIsNotPainted) {
    int painted = 0;
    watch([&painted](const QImage&) { ++painted; });
    test::settle();
    painted = 0;
    for (int i = 0; i < 5; ++i) {
        tick();
    }
    EXPECT_EQ(painted, 0);
    test::moveTo(window(), at(310));
    test::moveTo(window(), at(320));
    test::settle();
    EXPECT_EQ(painted, 0) << "only a pointer that rests is answered";
}

} // namespace
} // namespace raincast
