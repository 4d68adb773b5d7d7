// SPDX-License-Identifier: MIT
#include "support/dialog_script.h"
#include "support/qt_app.h"
#include "window/dlg_rename.h"

#include <QLineEdit>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class DlgRenameTest : public test::GuiTest {
protected:
    test::DialogScript script;

    int run(CDlgRename& dialog, const test::DialogScript::Step& step) {
        script.expect(QStringLiteral("Rename"), step);
        return dialog.run(nullptr);
    }

    static QLineEdit& edit(const QDialog& open) {
        return *open.findChild<QLineEdit*>(QStringLiteral("1044"));
    }
};

TEST_F(DlgRenameTest, OkTakesTheEditedName) {
    CDlgRename dialog(QStringLiteral("Weather"));
    const int result = run(dialog, [](QDialog& open) {
        EXPECT_EQ(edit(open).text(), QStringLiteral("Weather"));
        EXPECT_EQ(edit(open).selectedText(), QStringLiteral("Weather"));
        EXPECT_EQ(open.focusWidget(), &edit(open));
        QTest::keyClick(&edit(open), Qt::Key_End);
        QTest::keyClicks(&edit(open), QStringLiteral(" 2"));
        QTest::mouseClick(open.findChild<QWidget*>(QStringLiteral("1")), Qt::LeftButton);
    });
    EXPECT_EQ(result, Dialog::kOk);
    EXPECT_EQ(dialog.name(), QStringLiteral("Weather 2"));
}

TEST_F(DlgRenameTest, CancelKeepsTheName) {
    for (const bool byKey : {true, false}) {
        CDlgRename dialog(QStringLiteral("Weather"));
        const int result = run(dialog, [byKey](QDialog& open) {
            QTest::keyClicks(&edit(open), QStringLiteral("x"));
            if (byKey) {
                QTest::keyClick(&edit(open), Qt::Key_Escape);
            } else {
                QTest::mouseClick(open.findChild<QWidget*>(QStringLiteral("2")), Qt::LeftButton);
            }
        });
        EXPECT_EQ(result, Dialog::kCancel);
        EXPECT_EQ(dialog.name(), QStringLiteral("Weather"));
    }
}

TEST_F(DlgRenameTest, AnEmptyNameIsANameToo) {
    CDlgRename dialog(QStringLiteral("Weather"));
    const int result = run(dialog, [](QDialog& open) {
        QTest::keyClick(&edit(open), Qt::Key_Delete);
        QTest::keyClick(&edit(open), Qt::Key_Return);
    });
    EXPECT_EQ(result, Dialog::kOk);
    EXPECT_EQ(dialog.name(), QString());
}

TEST_F(DlgRenameTest, ItMayHaveACaptionOfItsOwn) {
    script.expect(QStringLiteral("Add Mark"));
    EXPECT_EQ(CDlgRename(QStringLiteral("A"), QStringLiteral("Add Mark")).run(nullptr), 2);
}

} // namespace
} // namespace raincast
