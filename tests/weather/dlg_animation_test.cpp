// SPDX-License-Identifier: MIT
#include "dialog_controls.h"
#include "support/dialog_script.h"
#include "support/qt_app.h"
#include "weather/dlg_animation.h"

namespace raincast {
namespace {

using test::DialogScript;

const QString kCaption = QStringLiteral("Animation");

class DlgAnimationTest : public test::GuiTest {
protected:
    int run(const DialogScript::Step& step, int messages = 0) {
        DialogScript script;
        int shown = 0;
        script.expect(kCaption, step);
        for (int i = 0; i < messages; ++i) {
            script.expect(QStringLiteral("Raincast"), [&shown](QDialog& /*message*/) { ++shown; });
        }
        const int result = CDlgAnimation(m_state).run(nullptr);
        EXPECT_EQ(shown, messages);
        return result;
    }

    RadarState m_state;
};

TEST_F(DlgAnimationTest, NumbersAreOpenOnlyWhileAnimationIsEnabled) {
    run([](QDialog& dialog) {
        const auto fields = dialog.findChildren<QLineEdit*>();
        ASSERT_EQ(fields.size(), 2);
        EXPECT_EQ(fields[0]->text(), QStringLiteral("6"));
        EXPECT_EQ(fields[1]->text(), QStringLiteral("9"));
        EXPECT_FALSE(fields[0]->isEnabled());
        test::check(dialog, "Enable Animation", true);
        EXPECT_TRUE(fields[0]->isEnabled());
        EXPECT_TRUE(fields[1]->isEnabled());
        test::check(dialog, "Enable Animation", false);
        EXPECT_FALSE(fields[1]->isEnabled());
    });
}

TEST_F(DlgAnimationTest, OkStoresEverything) {
    EXPECT_EQ(
        run([](QDialog& dialog) {
            test::check(dialog, "Enable Animation", true);
            test::type(dialog, 0, "25");
            test::type(dialog, 1, "60");
            test::check(dialog, "Auto-Update ", true);
            test::press(dialog, "OK");
        }),
        Dialog::kOk
    );
    EXPECT_TRUE(m_state.animate);
    EXPECT_EQ(m_state.frameCount, 25);
    EXPECT_EQ(m_state.frameInterval, 60);
    EXPECT_TRUE(m_state.autoUpdate);
}

struct Numbers {
    const char* frames;
    const char* interval;
};

TEST_F(DlgAnimationTest, NumbersOutOfRangeKeepTheDialogOpen) {
    for (const Numbers& row :
         {Numbers{"1", "9"}, Numbers{"26", "9"}, Numbers{"6", "0"}, Numbers{"6", "61"},
          Numbers{"six", "9"}}) {
        m_state = {};
        EXPECT_EQ(
            run(
                [&row](QDialog& dialog) {
                    test::check(dialog, "Enable Animation", true);
                    test::type(dialog, 0, row.frames);
                    test::type(dialog, 1, row.interval);
                    test::press(dialog, "OK");
                    EXPECT_TRUE(dialog.isVisible());
                },
                1
            ),
            Dialog::kCancel
        );
        EXPECT_TRUE(m_state.animate); // it is stored before the numbers are looked at
        EXPECT_EQ(m_state.frameCount, 6);
        EXPECT_EQ(m_state.frameInterval, 9);
    }
}

TEST_F(DlgAnimationTest, WithoutAnimationNumbersAreNotLookedAt) {
    m_state.animate = true;
    EXPECT_EQ(
        run([](QDialog& dialog) {
            test::type(dialog, 0, "99");
            test::check(dialog, "Enable Animation", false);
            test::press(dialog, "OK");
        }),
        Dialog::kOk
    );
    EXPECT_FALSE(m_state.animate);
    EXPECT_EQ(m_state.frameCount, 6);
}

} // namespace
} // namespace raincast
