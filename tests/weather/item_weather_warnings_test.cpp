// SPDX-License-Identifier: MIT
// Warnings with words on a radar item: their list, and the bar that warns the user.
#include "map/fitted_view.h"
#include "map/mark_manager.h"
#include "player/loop_setting.h"
#include "support/gif_maker.h"
#include "support/manual_timers.h"
#include "support/pointer.h"
#include "warnings/warning_row_delegate.h"
#include "warnings/warning_watch.h"
#include "weather_page.h"

#include <QAbstractButton>
#include <QDialog>
#include <QListWidget>
#include <QTimer>

namespace raincast {
namespace {

using test::DialogScript;

const QString kPicture = QStringLiteral("/ridge/Warnings/Short/MUX_Warnings_0.gif");
const QString kTexts = QStringLiteral("/ridge/Warnings/Short/MUX_Warnings_0.json");

/// Round the radar of MUX, whose picture has 0.009 degrees a pixel, a tornado warning; to the north
/// of it a flood.
constexpr char kTwo[] = R"({"sample": false, "warnings": [
    {"id": "MTR.TO.W.0001", "event": "Tornado Warning", "headline": "Take cover",
     "end": "2019-05-19T06:33:00Z",
     "polygons": [[[[37.0, -122.1], [37.0, -121.7], [37.3, -121.7], [37.3, -122.1]]]]},
    {"id": "MTR.FF.W.0002", "event": "Flash Flood Warning", "headline": "Climb",
     "end": "2019-05-19T07:00:00Z",
     "polygons": [[[[37.6, -122.1], [37.6, -121.7], [37.9, -121.7], [37.9, -122.1]]]]}]})";

class ItemWeatherWarningsTest : public test::WeatherPage {
protected:
    void serve(const QByteArray& texts) {
        m_server.serve(kPicture, test::columnGif(60));
        m_server.serve(kTexts, texts);
    }
    void showWarned(const QByteArray& texts = kTwo) {
        serve(texts);
        m_item->useWarnings(m_watch);
        showSite();
        tick();
    }
    /// Expects a list of events.
    static void expectList(DialogScript& script, const QStringList& events) {
        script.expect("Warnings", [events](QDialog& dialog) {
            const auto* const list = dialog.findChild<QListWidget*>();
            ASSERT_NE(list, nullptr);
            QStringList seen;
            for (int row = 0; row < list->count(); ++row) {
                seen += list->item(row)->text();
            }
            EXPECT_EQ(seen, events) << seen.join(u'|').toStdString();
        });
    }
    /// Expects a message in place of the list.
    void expectMessage(const QString& words) {
        DialogScript script;
        script.expect("Warnings", [words](QDialog& box) {
            EXPECT_EQ(box.property("text").toString(), words);
            EXPECT_EQ(box.findChild<QListWidget*>(), nullptr);
        });
        press("w");
    }
    /// Taps on the picture, whose tornado warning reaches from (128, 120) to (172, 154) and whose
    /// flood from (128, 54) to (172, 87), and waits until it is no first half of a double press.
    void tap(const QPoint& place) {
        test::click(*m_page->widget(), place);
        waitForTaps();
    }
    /// What is due earlier comes earlier, however slow all is.
    static void waitForTaps() {
        QTimer later;
        later.setSingleShot(true);
        later.start(2 * QApplication::doubleClickInterval());
        EXPECT_TRUE(QTest::qWaitFor([&] { return !later.isActive(); }, 30'000));
    }
    void press(const char* key) { EXPECT_TRUE(m_page->character(QString(key).at(0).unicode())); }
    [[nodiscard]] QString said() {
        test::settle();
        auto* const bar = m_window.findChild<QWidget*>("warningBar");
        auto* const words = m_window.findChild<QAbstractButton*>("warningWords");
        return bar != nullptr && bar->isVisible() ? words->accessibleName() : QString();
    }
    static void beAt(double latitude, double longitude) {
        CDataGPSPosition position;
        position.latitude = latitude;
        position.longitude = longitude;
        position.fixType = kFixGps;
        Listener<CDataGPSPosition>::Notify(position);
    }

    ManualTimers m_timers;
    int m_beeps = 0;
    CMarkManager m_marks;
    WarningWatch m_watch{m_marks, m_timers, [this] { ++m_beeps; }};
};

TEST_F(ItemWeatherWarningsTest, AreListedByTheMenuAndByTheirKey) {
    showWarned();
    DialogScript script;
    expectList(script, {"Tornado Warning", "Flash Flood Warning"});
    EXPECT_TRUE(m_page->command(kListWarnings, 0));
    expectList(script, {"Tornado Warning", "Flash Flood Warning"});
    press("w");
    expectList(script, {"Tornado Warning", "Flash Flood Warning"});
    press("W");
}

TEST_F(ItemWeatherWarningsTest, ATapListsThoseOfItsPlace) {
    showWarned();
    const auto bar = LoopSetting::bar();
    DialogScript script;
    expectList(script, {"Tornado Warning"});
    tap({150, 140});
    expectList(script, {"Flash Flood Warning"});
    tap({131, 57});
    expectList(script, {"Tornado Warning"});
    tap({175, 140}); // beside its side
    tap({181, 140});
    tap({150, 105});
    EXPECT_EQ(LoopSetting::bar(), bar) << "there is no loop";
}

TEST_F(ItemWeatherWarningsTest, ATapElsewhereStillShowsTheBarOfTheLoop) {
    showWarned();
    editAnimation(3);
    DialogScript script;
    expectList(script, {"Tornado Warning"});
    tap({150, 140});
    EXPECT_EQ(LoopSetting::bar(), LoopSetting::Bar::whereRoomIs);
    tap({20, 200});
    EXPECT_EQ(LoopSetting::bar(), LoopSetting::Bar::always);
    LoopSetting::setBar(LoopSetting::Bar::whereRoomIs);
}

TEST_F(ItemWeatherWarningsTest, ADragADoublePressAndAPressInLayoutModeListNothing) {
    showWarned();
    const DialogScript script;
    QWidget& page = *m_page->widget();
    test::press(page, {150, 140});
    test::moveTo(page, {130, 120});
    test::moveTo(page, {150, 140});
    test::moveTo(page, {170, 140});
    test::release(page, {170, 140});
    waitForTaps();
    test::click(page, {150, 140});
    test::doubleClick(page, {150, 140});
    waitForTaps();
    EXPECT_TRUE(m_page->command(kToggleLayout, 0));
    tap({150, 140});
}

TEST_F(ItemWeatherWarningsTest, WhileMeasuringATapIsAPoint) {
    showWarned();
    const DialogScript script;
    EXPECT_TRUE(m_page->command(kMeasure, 0));
    tap({150, 140});
    tap({150, 70});
}

TEST_F(ItemWeatherWarningsTest, WithoutTextsATapListsNothing) {
    serve("");
    m_server.serve(kTexts, "none", 404);
    showSite();
    const DialogScript script;
    tap({150, 140});
}

TEST_F(ItemWeatherWarningsTest, WithoutAnyAMessageSaysWhy) {
    showWarned(R"({"warnings": []})");
    expectMessage("There are no warnings in this picture.");
    m_server.serve(kTexts, "none", 404);
    update();
    expectMessage("The server has no texts of warnings.");
    editLayers({"Warnings"});
    expectMessage("Warnings are switched off.\nMenu: Weather, Layers");
}

TEST_F(ItemWeatherWarningsTest, OfAnotherRangeAreNotThisPictures) {
    showWarned();
    test::publishLayers(m_server, "MUX", "Long");
    test::publishFrames(m_server, {"20190519_0555"}, "MUX", "N0Z");
    press("3");
    finish();
    expectMessage("There is no picture of warnings.");
}

TEST_F(ItemWeatherWarningsTest, TheBarComesWithAnUpdateAndGoesByItsKey) {
    showWarned(R"({"warnings": []})");
    beAt(37.1, -121.9);
    EXPECT_EQ(said(), "");
    serve(kTwo);
    update();
    tick();
    EXPECT_EQ(said(), "Tornado Warning for your position until 6:33");
    EXPECT_EQ(m_beeps, 1);
    press("d");
    EXPECT_EQ(said(), "");
    EXPECT_FALSE(m_page->character(u'd')) << "nothing is left to dismiss";
}

TEST_F(ItemWeatherWarningsTest, TheBarComesFromTheCacheAfterAStart) {
    showWarned();
    restart();
    m_server.serve(kPicture, "none", 404);
    m_item->useWarnings(m_watch);
    beAt(37.1, -121.9);
    showPage();
    tick();
    EXPECT_EQ(said(), "Tornado Warning for your position until 6:33");
}

TEST_F(ItemWeatherWarningsTest, TheBarStaysWhenOnlyThePictureComes) {
    showWarned();
    beAt(37.1, -121.9);
    EXPECT_NE(said(), "");
    m_server.serve(kTexts, "busy", 500);
    update();
    tick();
    EXPECT_NE(said(), "");
    EXPECT_EQ(m_beeps, 1);
}

TEST_F(ItemWeatherWarningsTest, SwitchedOffTheyAreNotSaid) {
    serve(kTwo);
    m_item->useWarnings(m_watch);
    showSite();
    editLayers({"Warnings"});
    tick();
    beAt(37.1, -121.9);
    EXPECT_EQ(said(), "");
}

TEST_F(ItemWeatherWarningsTest, TheFittedImageStandsBelowTheBar) {
    showWarned();
    EXPECT_TRUE(m_item->keyDown(Qt::Key_Home));
    const ViewTransform without = m_item->view();
    beAt(37.1, -121.9);
    const int bar = m_page->coveredTop();
    ASSERT_GT(bar, 0);
    const ViewTransform below = fittedView({0, 0, 300, 280}, {600, 550}, bar);
    EXPECT_NE(below, without);
    EXPECT_EQ(m_item->view(), below) << "it follows when the bar comes";
    restart();
    EXPECT_EQ(m_item->view(), without) << "the next start has no bar yet";
    showPage();
    EXPECT_EQ(m_item->view(), without);
}

TEST_F(ItemWeatherWarningsTest, AViewOfTheUsersStaysWhenTheBarComesAndGoes) {
    showWarned();
    EXPECT_TRUE(m_item->keyDown(Qt::Key_Home));
    const ViewTransform fitted = m_item->view();
    beAt(37.1, -121.9);
    ASSERT_GT(m_page->coveredTop(), 0);
    press("d");
    EXPECT_EQ(said(), "");
    EXPECT_EQ(m_item->view(), fitted);
    EXPECT_TRUE(m_item->keyDown(Qt::Key_Down));
    const ViewTransform panned = m_item->view();
    beAt(38.9, -121.9); // away, and into it again
    beAt(37.1, -121.9);
    EXPECT_EQ(m_item->view(), panned);
}

TEST_F(ItemWeatherWarningsTest, TheItemsOwnTextsStandBelowTheBar) {
    showWarned();
    beAt(37.1, -121.9);
    const int bar = m_page->coveredTop();
    ASSERT_GT(bar, 0);
    // The lines of the position stand at the top of what is left.
    const QImage picture = drawn();
    bool whiteAbove = false;
    for (int x = 0; x < 300; ++x) {
        whiteAbove = whiteAbove || picture.pixel(x, bar / 2) != picture.pixel(0, bar / 2);
    }
    EXPECT_FALSE(whiteAbove);
}

} // namespace
} // namespace raincast
