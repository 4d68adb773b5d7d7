// SPDX-License-Identifier: MIT
#include "../units/scoped_units.h"
#include "../weather/dialog_controls.h"
#include "stations/dlg_station.h"
#include "stations/recent_stations.h"
#include "stations/station_map.h"
#include "support/dialog_script.h"
#include "support/pointer.h"
#include "support/qt_app.h"
#include "window/row_delegate.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>

namespace raincast {
namespace {

using test::DialogScript;

class DlgStationTest : public test::GuiTest {
protected:
    QString choose(GeoPosition position, const QString& current, const DialogScript::Step& step) {
        DialogScript script;
        script.expect("Weather Station", step);
        CDlgStation dialog(position, current);
        return dialog.run(nullptr) == Dialog::kOk ? dialog.chosenSite().value_or(QString())
                                                  : QString();
    }
};

TEST_F(DlgStationTest, AllSitesInTheOrderOfTheirNames) {
    const QString chosen = choose({}, "MUX", [](QDialog& dialog) {
        auto* list = dialog.findChild<QListWidget*>();
        EXPECT_EQ(list->count(), 155);
        EXPECT_EQ(list->item(0)->text(), QStringLiteral("AK:Bethel"));
        EXPECT_EQ(list->currentItem()->text(), QStringLiteral("CA:San Francisco Bay Area"));
        QTest::keyClicks(list, "sterl");
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    EXPECT_EQ(chosen, QStringLiteral("LWX"));
}

TEST_F(DlgStationTest, NearbySitesNearestFirst) {
    const QString chosen = choose({37.1, -121.8}, {}, [](QDialog& dialog) {
        auto* list = dialog.findChild<QListWidget*>();
        EXPECT_LT(list->count(), 20);
        EXPECT_EQ(list->item(0)->text(), QStringLiteral("CA:San Francisco Bay Area"));
        EXPECT_EQ(list->selectedItems(), QList{list->item(0)}) << "the row that has the keyboard";
        test::press(dialog, "OK");
    });
    EXPECT_EQ(chosen, QStringLiteral("MUX"));
}

TEST_F(DlgStationTest, DistancesAreInTheUsersUnit) {
    const struct {
        CUnits::DistanceUnit unit;
        const char* first;
    } rows[] = {
        {CUnits::kMiles, "1.9 Mi"},
        {CUnits::kNauticalMiles, "1.6 NM"},
        {CUnits::kKilometres, "3.0 km"},
        {CUnits::kMetres, "3022 m"},
    };
    for (const auto& row : rows) {
        const test::ScopedUnits chosen(row.unit);
        choose({37.1, -121.8}, {}, [&row](QDialog& dialog) {
            const auto* list = dialog.findChild<QListWidget*>();
            const QString remark = list->item(0)->data(RowDelegate::kRemarkRole).toString();
            EXPECT_EQ(remark.toStdString(), row.first);
        });
    }
    choose({}, {}, [](QDialog& dialog) {
        const auto* list = dialog.findChild<QListWidget*>();
        EXPECT_EQ(list->item(0)->data(RowDelegate::kRemarkRole).toString(), QString());
    });
}

TEST_F(DlgStationTest, CancellingChoosesNothing) {
    EXPECT_EQ(
        choose(
            {}, "???",
            [](QDialog& dialog) {
                const auto* list = dialog.findChild<QListWidget*>();
                EXPECT_EQ(list->selectedItems(), QList{list->item(0)}) << "the site is unknown";
                dialog.reject();
            }
        ),
        QString()
    );
}

/// What the list has, by the names.
QStringList rows(const QDialog& dialog) {
    QStringList names;
    const auto* list = dialog.findChild<QListWidget*>();
    for (int row = 0; row < list->count(); ++row) {
        names.append(list->item(row)->text());
    }
    return names;
}

StationMap& mapOf(const QDialog& dialog) {
    return static_cast<StationMap&>(*dialog.findChild<QWidget*>(QStringLiteral("stationMap")));
}

TEST_F(DlgStationTest, WhatIsTypedIntoFindIsListed) {
    RecentStations::forget();
    const QString chosen = choose({}, "MUX", [](QDialog& dialog) {
        test::type(dialog, 0, "portl");
        EXPECT_EQ(rows(dialog), (QStringList{"ME:Portland", "OR:Portland"}));
        EXPECT_EQ(dialog.findChild<QListWidget*>()->currentRow(), 0);
        QTest::keyClick(dialog.findChild<QLineEdit*>(), Qt::Key_Down);
        QTest::keyClick(dialog.findChild<QLineEdit*>(), Qt::Key_Return);
    });
    EXPECT_EQ(chosen, QStringLiteral("RTX"));
    EXPECT_EQ(RecentStations::ids(), QStringList("RTX"));
    choose({}, "MUX", [](QDialog& dialog) {
        test::type(dialog, 0, "portl");
        EXPECT_EQ(rows(dialog), (QStringList{"OR:Portland", "ME:Portland"})) << "the recent one";
        test::type(dialog, 0, "no such place");
        EXPECT_TRUE(rows(dialog).isEmpty());
        QTest::keyClick(dialog.findChild<QLineEdit*>(), Qt::Key_Return);
        EXPECT_FALSE(dialog.isVisible());
    });
    RecentStations::forget();
}

TEST_F(DlgStationTest, AnEmptyFieldListsAllAgain) {
    choose({}, "MUX", [](QDialog& dialog) {
        test::type(dialog, 0, "okx");
        EXPECT_EQ(rows(dialog).size(), 1);
        dialog.findChild<QLineEdit*>()->clear();
        EXPECT_EQ(rows(dialog).size(), 155);
        EXPECT_EQ(
            dialog.findChild<QListWidget*>()->currentItem()->text(), QStringLiteral("NY:Upton")
        ) << "it stays chosen";
    });
}

TEST_F(DlgStationTest, ItSaysWhereDistancesAreFrom) {
    const auto says = [](const QDialog& dialog) {
        return dialog.findChild<QLabel*>(QStringLiteral("1093"))->text().toStdString();
    };
    DialogScript script;
    script.expect("Weather Station", [&](QDialog& dialog) {
        EXPECT_EQ(says(dialog), "Distances from the map's middle");
    });
    CDlgStation({37.1, -121.8}, {}, "the map's middle").run(nullptr);
    script.expect("Weather Station", [&](QDialog& dialog) { EXPECT_EQ(says(dialog), ""); });
    CDlgStation({}, {}, "the map's middle").run(nullptr);
}

TEST_F(DlgStationTest, ATapOnTheMapChoosesTheNearestSite) {
    const QString chosen = choose({37.1, -121.8}, "MUX", [](QDialog& dialog) {
        test::press(dialog, "Map");
        StationMap& map = mapOf(dialog);
        ASSERT_TRUE(map.isVisible());
        EXPECT_FALSE(dialog.findChild<QListWidget*>()->isVisible());
        test::click(map, map.placeOf({41.0, -73.1}).toPoint());
        EXPECT_EQ(map.accessibleDescription(), QStringLiteral("NY:Upton"));
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    EXPECT_EQ(chosen, QStringLiteral("OKX"));
}

TEST_F(DlgStationTest, ArrowsGoFromSiteToSiteOnTheMap) {
    const QString chosen = choose({}, "OKX", [](QDialog& dialog) {
        test::press(dialog, "Map");
        StationMap& map = mapOf(dialog);
        EXPECT_TRUE(map.hasFocus());
        QTest::keyClick(&map, Qt::Key_Left);
        EXPECT_EQ(map.accessibleDescription(), QStringLiteral("PA:Philadelphia"));
        test::press(dialog, "Map");
        EXPECT_TRUE(dialog.findChild<QListWidget*>()->isVisible());
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    EXPECT_EQ(chosen, QStringLiteral("DIX"));
}

} // namespace
} // namespace raincast
