// SPDX-License-Identifier: MIT
// The radar item under the hands of a person: keys, pointer and position, on a loaded radar.
#include "map/fitted_view.h"
#include "player/loop_setting.h"
#include "player/player_bar.h"
#include "position/data_gps_position.h"
#include "support/pointer.h"
#include "weather_page.h"

#include <QApplication>

namespace raincast {
namespace {

class ItemWeatherViewTest : public test::WeatherPage {
protected:
    ItemWeatherViewTest() { showSite(); }
    ~ItemWeatherViewTest() override {
        CDataGPSPosition none;
        Listener<CDataGPSPosition>::Notify(none);
    }

    /// As the main window hands a typed character on.
    void typeCharacters(const char* text) {
        for (; *text != '\0'; ++text) {
            EXPECT_TRUE(m_page->character(static_cast<char16_t>(*text))) << text;
        }
    }
    [[nodiscard]] ImagePixel origin() const { return m_item->view().origin(); }
    static void publishFix(GeoPosition place) {
        CDataGPSPosition fix;
        fix.latitude = place.latitude;
        fix.longitude = place.longitude;
        fix.fixType = kFixGps;
        Listener<CDataGPSPosition>::Notify(fix);
    }
    [[nodiscard]] QWidget& window() const { return *m_page->widget(); }
};

TEST_F(ItemWeatherViewTest, ZoomingKeepsTheMiddleAndOutIsAWholeBlock) {
    const ImagePixel middle = m_item->centrePixel();
    typeCharacters("++");
    EXPECT_EQ(m_item->view().zoom(), -2);
    EXPECT_EQ(m_item->centrePixel(), middle);
    typeCharacters("+");
    EXPECT_EQ(m_item->view().zoom(), -2);
    typeCharacters("----");
    EXPECT_EQ(m_item->view().zoom(), 2);
    EXPECT_EQ(origin().column % 4, 0);
    EXPECT_EQ(origin().row % 4, 0);
    EXPECT_NEAR(m_item->centrePixel().column, middle.column, 4);
    EXPECT_NEAR(m_item->centrePixel().row, middle.row, 4);
    typeCharacters("----");
    EXPECT_EQ(m_item->view().zoom(), 4);
}

TEST_F(ItemWeatherViewTest, TheFittedImageStandsAboveTheBarOfTheLoop) {
    constexpr QSize kImage(600, 550);
    const auto showBar = [this](LoopSetting::Bar bar) {
        LoopSetting::setBar(bar);
        m_item->invalidate();
        for (int i = 0; i < 3; ++i) { // the bar follows a painting
            test::settle();
        }
        for (const auto* child : window().findChildren<QWidget*>()) {
            const auto* const shown = dynamic_cast<const PlayerBar*>(child);
            if (shown != nullptr && shown->isVisible()) {
                return PageRectangle{0, 0, 300, shown->y()};
            }
        }
        return PageRectangle{0, 0, 300, 280};
    };
    showBar(LoopSetting::Bar::never);
    editAnimation(3);
    m_page->keyDown(Qt::Key_Home);
    const ViewTransform without = m_item->view();
    EXPECT_EQ(without, fittedView({0, 0, 300, 280}, kImage));
    const PageRectangle above = showBar(LoopSetting::Bar::always);
    ASSERT_LT(above.bottom, 280);
    EXPECT_NE(m_item->view(), without);
    EXPECT_EQ(m_item->view(), fittedView(above, kImage)) << "it follows when the bar comes";
    m_page->keyDown(Qt::Key_Down);
    m_page->keyDown(Qt::Key_Home);
    EXPECT_EQ(m_item->view(), fittedView(above, kImage));
    showBar(LoopSetting::Bar::never);
    EXPECT_EQ(m_item->view(), without);
    m_page->keyDown(Qt::Key_Down);
    const ViewTransform panned = m_item->view();
    showBar(LoopSetting::Bar::always);
    EXPECT_EQ(m_item->view(), panned) << "the user chose it";
    LoopSetting::setBar(LoopSetting::Bar::whereRoomIs);
}

TEST_F(ItemWeatherViewTest, AKeyPansByThirtyTwoPixelsOfThePage) {
    for (const auto& [zoom, pixels] :
         {std::pair("", 32), std::pair("++", 8), std::pair("---", 64)}) {
        typeCharacters(zoom);
        const ImagePixel before = origin();
        m_page->keyDown(Qt::Key_Right);
        m_page->keyDown(Qt::Key_Down);
        EXPECT_EQ(origin().column - before.column, pixels) << zoom;
        EXPECT_EQ(origin().row - before.row, pixels) << zoom;
    }
}

TEST_F(ItemWeatherViewTest, ZoomedInADragMovesByWholeImagePixels) {
    typeCharacters("++");
    const ImagePixel before = origin();
    test::press(window(), {100, 100});
    test::moveTo(window(), {103, 100});
    EXPECT_EQ(origin(), before);
    test::moveTo(window(), {104, 100});
    EXPECT_EQ(origin(), (ImagePixel{before.column - 1, before.row}));
    test::moveTo(window(), {110, 93}); // right by six, two of which are left over; up by seven: two
    EXPECT_EQ(origin(), (ImagePixel{before.column - 2, before.row + 2}));
    test::release(window(), {110, 93});
}

TEST_F(ItemWeatherViewTest, ThePictureIsDraggedAlong) {
    const QRgb red = 0xFFFF0000;
    EXPECT_EQ(drawn().pixel(202 - 150, 150), red);
    test::press(window(), {100, 100});
    test::moveTo(window(), {130, 100});
    test::release(window(), {130, 100});
    EXPECT_EQ(drawn().pixel(202 - 150 + 30, 150), red);
    EXPECT_EQ(m_server.count(test::framesPath("MUX")), 1) << "looking around loads nothing";
}

TEST_F(ItemWeatherViewTest, APositionIsFollowedUntilThePersonPans) {
    const ViewTransform before = m_item->view();
    typeCharacters("L");
    EXPECT_TRUE(m_item->following());
    EXPECT_EQ(m_item->view(), before) << "there is no position yet";
    publishFix({37.5, -122.2});
    EXPECT_NEAR(m_item->centrePosition().latitude, 37.5, 0.01);
    EXPECT_NEAR(m_item->centrePosition().longitude, -122.2, 0.01);
    m_page->keyDown(Qt::Key_Left);
    EXPECT_FALSE(m_item->following());
    const ViewTransform panned = m_item->view();
    publishFix({37.2, -122.0});
    EXPECT_EQ(m_item->view(), panned);
}

TEST_F(ItemWeatherViewTest, APositionOutsideOfTheImageIsNotFollowed) {
    typeCharacters("l");
    publishFix({52.5, 13.4});
    EXPECT_FALSE(m_item->following());
}

TEST_F(ItemWeatherViewTest, WhatIsFollowedIsInTheMiddleOfAnotherSiteToo) {
    publishFix({37.5, -122.2});
    typeCharacters("l");
    publishFrames({"20190519_0558"}, "DAX");
    publishLayers("DAX");
    chooseSite("Sacra");
    EXPECT_EQ(m_item->state().siteId, "DAX");
    EXPECT_TRUE(m_item->following());
    EXPECT_NEAR(m_item->centrePosition().latitude, 37.5, 0.01);
}

TEST_F(ItemWeatherViewTest, WhatIsFittedStaysSoAtAnotherSite) {
    const auto expectFitted = [this](const char* when, QSize size) {
        m_window.resize(size);
        m_page->size(size.width(), size.height());
        EXPECT_EQ(m_item->view(), fittedView(m_item->rectangle(), {600, 550})) << when;
    };
    EXPECT_TRUE(m_item->keyDown(Qt::Key_Home));
    expectFitted("at once", {640, 571});
    publishFrames({"20190519_0558"}, "DAX");
    publishLayers("DAX");
    chooseSite("Sacra");
    EXPECT_EQ(m_item->state().siteId, "DAX");
    expectFitted("at another site", {300, 281});
}

TEST_F(ItemWeatherViewTest, AnotherSizeOfThePageKeepsTheCorner) {
    const ImagePixel corner = origin();
    m_window.resize(280, 300);
    m_page->size(280, 300);
    EXPECT_EQ(origin(), corner);
}

} // namespace
} // namespace raincast
