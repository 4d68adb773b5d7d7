// SPDX-License-Identifier: MIT
// The numbers of the radar item's commands, typed by hand, and what each of them does.
#include "weather_page.h"
#include "window/menu_table.h"
#include "window/row_delegate.h"

#include <QListWidget>

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
        entries.emplace_back(row.command, QString::fromUtf16(row.text).remove(u'&').toStdString());
    }
    EXPECT_THAT(
        entries, ElementsAre(
                     Pair(40028, "Nearby Stations"), Pair(40044, "All Stations"),
                     Pair(40033, "Animation"), Pair(40034, "Layers"), Pair(40035, "Storage")
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

} // namespace
} // namespace raincast
