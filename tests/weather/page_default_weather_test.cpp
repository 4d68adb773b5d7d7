// SPDX-License-Identifier: MIT
#include "page/item.h"
#include "page/page_type.h"
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

/// A radar item in a place of its own, where the next one stands as well.
class PlacedItem : public CItemWeather {
public:
    static void* operator new(std::size_t size) {
        alignas(CItemWeather) static std::byte place[2 * sizeof(CItemWeather)];
        EXPECT_LE(size, sizeof(place));
        return place;
    }
    static void operator delete(void* /*place*/) {}
};

TEST_F(PageDefaultWeatherTest, AnItemAtTheDeletedOnesAddressIsNotTakenForIt) {
    CPageDefaultWeather page(std::make_unique<PlacedItem>());
    show(page);
    const auto* const deleted = page.items()[0].get();
    page.select(page.items()[0].get());
    EXPECT_TRUE(page.command(kDeleteItem, 0));
    CPageDisplay::CItem& added = page.addItem(std::make_unique<PlacedItem>());
    ASSERT_EQ(&added, deleted);
    added.setRectangle({10, 20, 110, 140});
    page.size(240, 320);
    EXPECT_EQ(added.rectangle(), (PageRectangle{10, 20, 110, 140}));
    page.deactivate();
}

TEST_F(PageDefaultWeatherTest, AnotherItemsEndAndANewOrderLeaveTheItemFillingThePage) {
    CPageDefaultWeather page;
    show(page);
    CPageDisplay::CItem* const weather = page.items()[0].get();
    page.select(&page.addItem(std::make_unique<CItemWeather>()));
    EXPECT_TRUE(page.command(kDeleteItem, 0));
    page.select(&page.addItem(std::make_unique<CItemWeather>()));
    page.select(weather);
    EXPECT_TRUE(page.command(kBringToFront, 0));
    EXPECT_EQ(page.items().back().get(), weather);
    page.select(page.items().front().get());
    EXPECT_TRUE(page.command(kDeleteItem, 0));
    weather->setRectangle({10, 20, 110, 140});
    page.size(240, 320);
    EXPECT_TRUE(fills(page));
    page.deactivate();
}

} // namespace
} // namespace raincast
