// SPDX-License-Identifier: MIT
#include "../units/scoped_units.h"
#include "../weather/dialog_controls.h"
#include "along/along_dialog.h"
#include "along/along_setting.h"
#include "support/dialog_script.h"
#include "support/qt_app.h"
#include "window/row_delegate.h"

#include <QLabel>
#include <QListWidget>

#include <gmock/gmock.h>

namespace raincast {
namespace {

using test::DialogScript;
using testing::ElementsAre;

constexpr GeoPosition kBay{37.1, -121.8};

std::string says(const QDialog& dialog, const char* control) {
    return dialog.findChild<QLabel*>(QLatin1String(control))->text().toStdString();
}
std::string unit(const QDialog& dialog) {
    return says(dialog, "1101");
}
std::string amount(const QDialog& dialog) {
    return says(dialog, "1104");
}

class AlongDialogTest : public test::GuiTest {
protected:
    ~AlongDialogTest() override { AlongSetting::setMetres(m_before); }

    std::vector<QString> choose(const DialogScript::Step& step) {
        script.expect("Take Along", step);
        AlongDialog dialog({kBay, QStringLiteral("your position")}, like, [this] { return free; });
        return dialog.run(nullptr) == Dialog::kOk ? dialog.siteIds() : std::vector<QString>();
    }

    DialogScript script;
    RadarState like;
    qint64 free = 3'000'000'000;

private:
    const double m_before = AlongSetting::metres();
};

TEST_F(AlongDialogTest, SitesWithinADistanceAreListedWithWhatTheyTake) {
    const test::ScopedUnits units(CUnits::kKilometres);
    const auto sites = choose([](QDialog& dialog) {
        EXPECT_EQ(unit(dialog), "km");
        EXPECT_EQ(says(dialog, "1102"), "from your position");
        test::type(dialog, 0, "200");
        const auto& list = *dialog.findChild<QListWidget*>();
        ASSERT_EQ(list.count(), 2);
        EXPECT_EQ(list.item(0)->text(), QStringLiteral("CA:San Francisco Bay Area"));
        EXPECT_EQ(
            list.item(0)->data(RowDelegate::kRemarkRole).toString(), QStringLiteral("3.0 km")
        );
        // 2 sites of 7 frames of 25 kB and two ranges' layers of 110 kB
        EXPECT_TRUE(QTest::qWaitFor([&] { return amount(dialog).find("free") != std::string::npos; }
        ));
        EXPECT_EQ(amount(dialog), "2 sites, about 790 kB (3 GB free)");
        test::press(dialog, "Take Along");
    });
    EXPECT_THAT(sites, ElementsAre("MUX", "DAX"));
    EXPECT_NEAR(AlongSetting::metres(), 200'000, 1);
}

TEST_F(AlongDialogTest, TheLoopCounts) {
    const test::ScopedUnits units(CUnits::kKilometres);
    like.animate = true;
    like.frameCount = 10;
    choose([](QDialog& dialog) {
        test::type(dialog, 0, "100");
        EXPECT_EQ(amount(dialog).substr(0, 18), "1 site, about 2 MB");
    });
}

TEST_F(AlongDialogTest, TheDistanceIsKeptInMetres) {
    AlongSetting::setMetres(100 * 1852);
    for (const auto& [chosen, text] :
         {std::pair(CUnits::kNauticalMiles, "100"), std::pair(CUnits::kMiles, "115"),
          std::pair(CUnits::kMetres, "185200")}) {
        const test::ScopedUnits units(chosen);
        choose([text = text](QDialog& dialog) {
            EXPECT_EQ(dialog.findChild<QLineEdit*>()->text().toStdString(), text);
        });
    }
    EXPECT_EQ(AlongSetting::metres(), 100 * 1852);
}

TEST_F(AlongDialogTest, WhatCannotBeKeepsItOpen) {
    const test::ScopedUnits units(CUnits::kKilometres);
    for (const char* typed : {" ", "many", "0", "-3", "nan", "inf", "2"}) {
        const auto sites = choose([&](QDialog& dialog) {
            script.expect("Take Along", [&](QDialog& box) {
                EXPECT_TRUE(box.findChild<QLabel*>() != nullptr);
            });
            test::type(dialog, 0, typed);
            EXPECT_EQ(dialog.findChild<QListWidget*>()->count(), 0) << typed;
            test::press(dialog, "Take Along");
            EXPECT_TRUE(dialog.isVisible()) << typed;
        });
        EXPECT_TRUE(sites.empty()) << typed;
    }
}

TEST_F(AlongDialogTest, MoreThanTheDiskHasIsRefused) {
    const test::ScopedUnits units(CUnits::kKilometres);
    free = 400'000; // one site takes 395 kB
    choose([this](QDialog& dialog) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return amount(dialog).find("free") != std::string::npos; }
        ));
        test::type(dialog, 0, "200");
        script.expect("Take Along");
        test::press(dialog, "Take Along");
        EXPECT_TRUE(dialog.isVisible());
    });
    const auto sites = choose([](QDialog& dialog) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return amount(dialog).find("free") != std::string::npos; }
        ));
        test::type(dialog, 0, "100");
        test::press(dialog, "Take Along");
    });
    EXPECT_THAT(sites, ElementsAre("MUX"));
}

} // namespace
} // namespace raincast
