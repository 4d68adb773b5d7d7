// SPDX-License-Identifier: MIT
#include "display/item.h"
#include "paged/page_type.h"
#include "support/dialog_script.h"
#include "support/qt_app.h"
#include "support/serial_bytes.h"
#include "weather/item_weather.h"
#include "weather/page_default_weather.h"

#include <QWidget>

#include <algorithm>

namespace raincast {
namespace {

class PageDefaultWeatherTest : public test::GuiTest {
protected:
    PageDefaultWeatherTest() { m_window.resize(240, 320); }

    void show(CPageDisplay& page) {
        test::DialogScript script;
        script.expect("Weather Station");
        test::show(m_window);
        page.activate(m_window, true);
        test::settle();
    }
    static bool fills(const CPageDisplay& page) {
        const PageRectangle whole{0, 0, page.deviceSize().width(), page.deviceSize().height()};
        return page.items().size() == 1 && page.items()[0]->rectangle() == whole;
    }

    QWidget m_window;
};

TEST_F(PageDefaultWeatherTest, IsNamedAndHoldsOneRadarItem) {
    const CPageDefaultWeather page;
    EXPECT_EQ(page.name(), QStringLiteral("Weather"));
    ASSERT_EQ(page.items().size(), 1U);
    EXPECT_NE(dynamic_cast<const CItemWeather*>(page.items()[0].get()), nullptr);
    EXPECT_EQ(page.GetTypeId(), kTypePageDisplay);
}

TEST_F(PageDefaultWeatherTest, TheUserCanAddOne) {
    const auto& types = CAppPaged::PageType::all();
    const auto found = std::find_if(types.begin(), types.end(), [](const auto* type) {
        return type->name() == QStringLiteral("Weather");
    });
    ASSERT_NE(found, types.end());
    EXPECT_EQ((*found)->create(nullptr)->name(), QStringLiteral("Weather"));
}

TEST_F(PageDefaultWeatherTest, TheItemFillsThePageInBothDirections) {
    CPageDefaultWeather page;
    show(page);
    EXPECT_TRUE(fills(page));
    m_window.resize(320, 240);
    page.size(320, 240);
    EXPECT_TRUE(fills(page));
    page.deactivate();
}

TEST_F(PageDefaultWeatherTest, ComesBackAsAPlainPageThatItsItemStillFills) {
    QByteArray bytes;
    {
        CPageDefaultWeather page;
        show(page);
        bytes = test::writtenBlock(page);
        page.deactivate();
    }
    const auto read = test::readBlock(bytes);
    EXPECT_EQ(dynamic_cast<CPageDefaultWeather*>(read.get()), nullptr);
    auto* page = dynamic_cast<CPageDisplay*>(read.get());
    ASSERT_NE(page, nullptr);
    show(*page);
    m_window.resize(320, 240);
    page->size(320, 240);
    EXPECT_TRUE(fills(*page));
    page->deactivate();
}

TEST_F(PageDefaultWeatherTest, ADeletedItemIsNotAddressed) {
    CPageDefaultWeather page;
    show(page);
    page.select(page.items()[0].get());
    EXPECT_TRUE(page.command(kDeleteItem, 0));
    EXPECT_TRUE(page.items().empty());
    page.size(320, 240);
    page.deactivate();
}

} // namespace
} // namespace raincast
