// SPDX-License-Identifier: MIT
#include "letters/give_letters.h"
#include "support/qt_app.h"

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>

namespace raincast {
namespace {

class GiveLettersTest : public test::GuiTest {};

TEST_F(GiveLettersTest, EntriesOfAMenu) {
    QMenu menu;
    menu.addAction("&Pages...");
    menu.addSeparator();
    menu.addAction("-")->setVisible(false);
    QAction* const page = menu.addAction("Port && starboard");
    QAction* const other = menu.addAction("Pilot");
    giveLetters(menu);
    EXPECT_EQ(page->text(), QStringLiteral("Port && &starboard"));
    EXPECT_EQ(other->text(), QStringLiteral("P&ilot"));
    giveLetters(menu);
    EXPECT_EQ(other->text(), QStringLiteral("P&ilot")) << "it keeps it";
}

TEST_F(GiveLettersTest, ButtonsOfADialog) {
    QDialog dialog;
    QLabel label("&Course:", &dialog);
    QLineEdit edit(&dialog);
    label.setBuddy(&edit);
    QCheckBox box("Keep it", &dialog);
    QPushButton ok("OK", &dialog);
    QPushButton cancel("Cancel", &dialog);
    giveLetters(dialog);
    EXPECT_EQ(box.text(), QStringLiteral("&Keep it"));
    EXPECT_EQ(ok.text(), QStringLiteral("&OK"));
    EXPECT_EQ(cancel.text(), QStringLiteral("C&ancel"));
    EXPECT_EQ(label.text(), QStringLiteral("&Course:"));
}

} // namespace
} // namespace raincast
