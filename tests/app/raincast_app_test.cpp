// SPDX-License-Identifier: MIT
#include "app/raincast_app.h"
#include "cancel_dialogs.h"
#include "display/item.h"
#include "display/page_display.h"
#include "paged/page.h"
#include "support/qt_app.h"
#include "weather/item_weather.h"
#include "window/command_set.h"

#include <QMenu>
#include <QWidget>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class TroubledItem : public CPageDisplay::CItem {
public:
    void draw(QPainter& /*painter*/) override {}
    [[nodiscard]] QString statusText() const override { return text; }
    QString text;
};

class RaincastAppTest : public test::GuiTest {
protected:
    const test::CancelDialogs nobody;
    QWidget window;
    QMenu menu;
    CommandSet commands{window};
    CRaincastApp application;

    RaincastAppTest() { application.attach(window, window, commands, menu); }
};

TEST_F(RaincastAppTest, ItStartsWithOneWeatherPage) {
    application.restoreDefaultPages();
    ASSERT_EQ(application.pages().size(), 1U);
    EXPECT_EQ(application.current(), application.pages().front().get());
    EXPECT_EQ(application.current()->name(), "Weather");
    EXPECT_TRUE(application.current()->enabled());
    const auto* page = dynamic_cast<const CPageDisplay*>(application.current());
    ASSERT_NE(page, nullptr);
    ASSERT_EQ(page->items().size(), 1U);
    EXPECT_NE(dynamic_cast<const CItemWeather*>(page->items()[0].get()), nullptr);
}

TEST_F(RaincastAppTest, RestoringReplacesWhateverThereWas) {
    application.restoreDefaultPages();
    application.append(std::make_unique<CPageDisplay>()).setName("Mine");
    application.restoreDefaultPages();
    ASSERT_EQ(application.pages().size(), 1U);
    EXPECT_EQ(application.pages().front()->name(), "Weather");
}

TEST_F(RaincastAppTest, TheCurrentPagesTroubleIsTheApplications) {
    EXPECT_EQ(application.problem(), "");
    application.restoreDefaultPages();
    EXPECT_EQ(application.problem(), "");
    auto item = std::make_unique<TroubledItem>();
    TroubledItem& troubled = *item;
    static_cast<CPageDisplay*>(application.current())->addItem(std::move(item));
    EXPECT_EQ(application.problem(), "");
    troubled.text = "Could not access server.\n";
    EXPECT_EQ(application.problem(), "Could not access server.\n");
    application.select(std::nullopt);
    EXPECT_EQ(application.problem(), "");
}

} // namespace
} // namespace raincast
