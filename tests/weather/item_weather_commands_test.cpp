// SPDX-License-Identifier: MIT
// The numbers of the radar item's commands, typed by hand, and what each of them does.
#include "radar/catalogue/products.h"
#include "weather_page.h"
#include "window/command_set.h"
#include "window/menu_table.h"
#include "window/row_delegate.h"

#include <QListWidget>
#include <QMenu>

#include <algorithm>
#include <string>

namespace raincast {
namespace {

using test::DialogScript;
using testing::ElementsAre;
using testing::Pair;

class ItemWeatherCommandsTest : public test::WeatherPage {
protected:
    ItemWeatherCommandsTest() { showSite(); }

    /// Gives a command as the page's menu does; a dialog of that title opens.
    void expectDialog(int command, const QString& title, DialogScript::Step step = {}) {
        DialogScript script;
        script.expect(title, std::move(step));
        EXPECT_TRUE(m_page->command(command, clicked)) << command;
    }
    static const QListWidget& listOf(QDialog& dialog) { return *dialog.findChild<QListWidget*>(); }
};

TEST_F(ItemWeatherCommandsTest, TheNumbersOfItsMenuStay) {
    std::vector<std::pair<int, std::string>> entries;
    for (const MenuRow& row : MenuTableRecord::find(108)[0].rows[0].rows) {
        entries.emplace_back(row.command, QString::fromUtf8(row.text).remove(u'&').toStdString());
    }
    EXPECT_THAT(
        entries, ElementsAre(
                     Pair(40028, "Nearby Stations"), Pair(40044, "All Stations"),
                     Pair(0, "Product"), Pair(0, "Loop"), Pair(40033, "Animation"),
                     Pair(40034, "Layers"), Pair(40035, "Storage"), Pair(40970, "Warnings..."),
                     Pair(40971, "Dismiss Warning"), Pair(0, "Pictures")
                 )
    );
}

TEST_F(ItemWeatherCommandsTest, EachNumberDoesItsWork) {
    expectDialog(40028, "Weather Station", [](QDialog& dialog) {
        EXPECT_LT(listOf(dialog).count(), 155);
    });
    expectDialog(40044, "Weather Station", [](QDialog& dialog) {
        EXPECT_EQ(listOf(dialog).count(), 155);
    });
    expectDialog(40033, "Animation");
    expectDialog(40034, "Radar Layers");
    expectDialog(40035, "Radar Image Storage");
    const int before = m_server.count(test::framesPath("MUX"));
    EXPECT_TRUE(m_page->command(40032, clicked));
    finish();
    EXPECT_EQ(m_server.count(test::framesPath("MUX")), before + 1);
}

TEST_F(ItemWeatherCommandsTest, NearbyStationsAreThoseNearTheMiddleOfTheView) {
    CDataGPSPosition fix;
    fix.latitude = 37.1;
    fix.longitude = -121.8;
    fix.fixType = kFixGps;
    Listener<CDataGPSPosition>::Notify(fix);
    const std::pair<const char*, const char*> nearest[] = {
        {"CA:San Francisco Bay Area", "4.6 Mi"}, {"CA:Sacramento", "66.7 Mi"}};
    for (const auto& [name, distance] : nearest) {
        expectDialog(40028, "Weather Station", [&, name = name, distance = distance](auto& dialog) {
            const QListWidgetItem& first = *listOf(dialog).item(0);
            EXPECT_EQ(first.text().toStdString(), name);
            EXPECT_EQ(first.data(RowDelegate::kRemarkRole).toString().toStdString(), distance);
        });
        for (int i = 0; i < 4; ++i) {
            m_page->keyDown(Qt::Key_Right);
            m_page->keyDown(Qt::Key_Up);
        }
        m_page->keyDown(Qt::Key_Right);
    }
    Listener<CDataGPSPosition>::Notify(fix = {});
}

TEST_F(ItemWeatherCommandsTest, TheProductsOfTheMenuAreThoseOfTheTable) {
    const auto rows = MenuTableRecord::find(108)[0].rows[0].rows[2].rows;
    ASSERT_EQ(rows.size(), radarProducts().size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(QString::fromUtf8(rows[i].text).remove(u'&'), radarProducts()[i].nameText());
        EXPECT_EQ(rows[i].command, 40930 + static_cast<int>(i));
        EXPECT_EQ(rows[i].key, std::to_string(i + 1));
    }
}

TEST_F(ItemWeatherCommandsTest, AProductIsShownAtOnce) {
    EXPECT_TRUE(m_page->command(40931, clicked));
    EXPECT_EQ(m_item->state().product, 1);
    EXPECT_TRUE(m_item->loading());
    finish();
    EXPECT_EQ(m_server.count(test::framesPath("MUX", "NCR")), 1);

    EXPECT_TRUE(m_page->character(u'1'));
    EXPECT_EQ(m_item->state().product, 0);
    finish();
    const int before = m_server.count(test::framesPath("MUX"));
    EXPECT_TRUE(m_page->character(u'1'));
    EXPECT_FALSE(m_item->loading()) << "it is shown already";
    EXPECT_EQ(m_server.count(test::framesPath("MUX")), before);
    EXPECT_FALSE(m_page->character(u'8'));
    EXPECT_EQ(m_item->state().product, 0);
}

TEST_F(ItemWeatherCommandsTest, TheProductOfAnotherRangeComesWithItsLayers) {
    const auto asksForLongRange = [this] {
        const auto requests = m_server.requests();
        return std::any_of(requests.begin(), requests.end(), [](const auto& request) {
            return request.path.contains(QStringLiteral("/Long/"));
        });
    };
    EXPECT_FALSE(asksForLongRange());
    EXPECT_TRUE(m_page->character(u'3'));
    finish();
    EXPECT_TRUE(asksForLongRange());
}

TEST_F(ItemWeatherCommandsTest, AProductMayBeChosenBeforeASite) {
    makePage();
    m_item->setRectangle({0, 0, 300, 280});
    EXPECT_TRUE(m_page->character(u'6'));
    EXPECT_EQ(m_item->state().product, 5);
    EXPECT_FALSE(m_item->loading());
}

TEST_F(ItemWeatherCommandsTest, TheMenuMarksTheProductOfTheFirstItem) {
    auto& second = static_cast<CItemWeather&>(m_page->addItem(std::make_unique<CItemWeather>()));
    EXPECT_TRUE(second.character(u'2'));
    CommandSet commands(m_window);
    const auto menu = commands.load(CItemWeather::kMenu);
    m_page->menuPopUp(*menu);
    EXPECT_TRUE(findCommand(*menu, 40930)->isChecked());
    EXPECT_FALSE(findCommand(*menu, 40931)->isChecked());
}

} // namespace
} // namespace raincast
