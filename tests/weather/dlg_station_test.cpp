// SPDX-License-Identifier: MIT
#include "dialog_controls.h"
#include "support/dialog_script.h"
#include "support/qt_app.h"
#include "units/scoped_units.h"
#include "weather/dlg_station.h"
#include "window/row_delegate.h"

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

} // namespace
} // namespace raincast
