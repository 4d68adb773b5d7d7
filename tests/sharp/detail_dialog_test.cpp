// SPDX-License-Identifier: MIT
#include "page/global_settings_type.h"
#include "sharp/detail_dialog.h"
#include "sharp/detail_setting.h"
#include "support/dialog_script.h"
#include "support/qt_app.h"

#include <QComboBox>
#include <QDialog>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>

namespace raincast {
namespace {

class DetailDialogTest : public test::GuiTest {
protected:
    ~DetailDialogTest() override { DetailSetting::setAutomatic(true); }

    /// Opens the dialog as the menu does.
    static void open() {
        const auto all = CAppPaged::GlobalSettingsType::all();
        const auto type = std::find_if(all.begin(), all.end(), [](const auto* each) {
            return each->caption() == "Detail";
        });
        ASSERT_NE(type, all.end());
        (*type)->open(nullptr);
    }
    static void choose(int row, Qt::Key end) {
        test::DialogScript script;
        script.expect("Detail", [row, end](QDialog& dialog) {
            dialog.findChild<QComboBox*>()->setCurrentIndex(row);
            QTest::keyClick(&dialog, end);
        });
        open();
    }
};

TEST_F(DetailDialogTest, AutomaticIsTheDefault) {
    EXPECT_TRUE(DetailSetting::automatic());
    test::DialogScript script;
    script.expect("Detail", [](QDialog& dialog) {
        EXPECT_EQ(dialog.findChild<QComboBox*>()->currentText(), "Automatic");
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    open();
}

TEST_F(DetailDialogTest, OkTakesTheChoiceAndCancelDoesNot) {
    choose(1, Qt::Key_Return);
    EXPECT_FALSE(DetailSetting::automatic());
    choose(0, Qt::Key_Escape);
    EXPECT_FALSE(DetailSetting::automatic());
    choose(0, Qt::Key_Return);
    EXPECT_TRUE(DetailSetting::automatic());
}

} // namespace
} // namespace raincast
