// SPDX-License-Identifier: MIT
#include "replay/past_storm_dialog.h"
#include "support/dialog_script.h"
#include "support/qt_app.h"
#include "weather/dialog_controls.h"

#include <QCheckBox>
#include <QComboBox>

namespace raincast {
namespace {

using test::DialogScript;

class PastStormDialogTest : public test::GuiTest {
protected:
    static QString shown(QDialog& dialog) {
        const auto fields = dialog.findChildren<QLineEdit*>();
        return fields[0]->text() + u' ' + fields[1]->text() + u' ' + fields[2]->text();
    }

    PastStormChoice choice{*readReplay("2021-12-11T03:00Zx10")};
};

TEST_F(PastStormDialogTest, PicksAStormByKeys) {
    DialogScript script;
    script.expect("Past Storm", [](QDialog& dialog) {
        auto* const storms = dialog.findChild<QComboBox*>();
        EXPECT_EQ(storms->currentText(), "2021-12-11 PAH Mayfield");
        EXPECT_EQ(shown(dialog), "2021-12-11 03:00 10");
        storms->setFocus();
        QTest::keyClick(storms, Qt::Key_Home);
        EXPECT_EQ(shown(dialog), "2020-08-10 17:00 10");
        QTest::mouseClick(dialog.findChild<QCheckBox*>(), Qt::LeftButton);
        test::press(dialog, "OK");
    });
    EXPECT_EQ(PastStormDialog(choice).run(nullptr), Dialog::kOk);
    EXPECT_EQ(choice, (PastStormChoice{*readReplay("2020-08-10T17:00Zx10"), true, "DVN"}));
}

TEST_F(PastStormDialogTest, TakesAnyTime) {
    DialogScript script;
    script.expect("Past Storm", [](QDialog& dialog) {
        test::type(dialog, 0, "2024-02-29");
        test::type(dialog, 1, " 23:59 ");
        test::type(dialog, 2, "60");
        test::press(dialog, "OK");
    });
    EXPECT_EQ(PastStormDialog(choice).run(nullptr), Dialog::kOk);
    EXPECT_EQ(choice, (PastStormChoice{*readReplay("2024-02-29T23:59Zx60"), false, ""}));
}

TEST_F(PastStormDialogTest, CancelChangesNothing) {
    DialogScript script;
    script.expect("Past Storm", [](QDialog& dialog) {
        test::type(dialog, 2, "60");
        test::press(dialog, "Cancel");
    });
    EXPECT_EQ(PastStormDialog(choice).run(nullptr), Dialog::kCancel);
    EXPECT_EQ(choice.replay.speed, 10);
}

class WrongStormTest : public PastStormDialogTest,
                       public ::testing::WithParamInterface<std::array<const char*, 3>> {};

TEST_P(WrongStormTest, StaysOpenWithAMessage) {
    DialogScript script;
    script.expect("Past Storm", [](QDialog& dialog) {
        for (int field = 0; field < 3; ++field) {
            test::type(dialog, field, GetParam()[static_cast<std::size_t>(field)]);
        }
        test::press(dialog, "OK");
        EXPECT_TRUE(dialog.isVisible());
        test::press(dialog, "Cancel");
    });
    script.expect("Raincast", [](QDialog& box) { test::press(box, "OK"); });
    EXPECT_EQ(PastStormDialog(choice).run(nullptr), Dialog::kCancel);
}

INSTANTIATE_TEST_SUITE_P(
    Wrong, WrongStormTest,
    ::testing::Values(
        std::array{"2019-12-31", "23:59", "1"}, std::array{"2999-01-01", "00:00", "1"},
        std::array{"2021-02-29", "00:00", "1"}, std::array{"2021-12-11", "25:00", "1"},
        std::array{"2021-12-11", " ", "1"}, std::array{"2021-12-11", "03:00", "0"},
        std::array{"2021-12-11", "03:00", "61"}, std::array{" ", " ", " "}
    )
);

} // namespace
} // namespace raincast
