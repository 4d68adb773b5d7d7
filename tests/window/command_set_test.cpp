// SPDX-License-Identifier: MIT
#include "support/qt_app.h"
#include "window/command_set.h"
#include "window/events.h"
#include "window/window.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QToolBar>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <vector>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr MenuRow kSettings[] = {menuEntry(21, "&Units..."), menuEntry(22, "&Vector...")};
constexpr MenuRow kPages[] = {
    menuEntry(40004, "&Previous page"), menuEntry(40005, "&Next page"), menuSeparator(),
    subMenu("&Settings", kSettings), menuEntry(40010, "E&xit")};
constexpr MenuRow kBar[] = {subMenu("&Menu", kPages), subMenu("&Other", kSettings)};
constexpr MenuRow kLoaded[] = {subMenu("popup", kSettings)};

constexpr int kLoadedId = 4901;
const MenuTableRecord loadedMenu{kLoadedId, kLoaded};

class NotingWindow : public Window {
public:
    std::vector<std::string> log;
    bool greysNext = false;

    void onCommand(int id, QWidget* control, int notification) override {
        EXPECT_EQ(control, nullptr);
        EXPECT_EQ(notification, clicked);
        log.push_back("command " + std::to_string(id));
    }
    bool windowProcedure(QEvent& event) override {
        if (event.type() == event_type::menuPopup) {
            const QMenu& menu = static_cast<MenuPopupEvent&>(event).menu();
            log.push_back("popup " + menu.title().toStdString());
            enableCommand(menu, 40005, !greysNext);
            checkCommand(menu, 40004, true);
        }
        return Window::windowProcedure(event);
    }
};

class CommandSetTest : public test::GuiTest {
protected:
    QMainWindow mainWindow;
    NotingWindow window;
    CommandSet commands{mainWindow};

    CommandSetTest() { window.attach(mainWindow); }
};

std::vector<std::string> texts(const QWidget& menu) {
    std::vector<std::string> result;
    for (const QAction* entry : menu.actions()) {
        result.push_back(entry->isSeparator() ? "-" : entry->text().toStdString());
    }
    return result;
}

TEST_F(CommandSetTest, AMenuBarIsMadeFromItsRows) {
    commands.fill(*mainWindow.menuBar(), kBar);
    EXPECT_THAT(texts(*mainWindow.menuBar()), ElementsAre("&Menu", "&Other"));
    const QMenu* first = firstSubmenu(*mainWindow.menuBar());
    ASSERT_NE(first, nullptr);
    EXPECT_THAT(
        texts(*first), ElementsAre("&Previous page", "&Next page", "-", "&Settings", "E&xit")
    );
    EXPECT_THAT(texts(*firstSubmenu(*first)), ElementsAre("&Units...", "&Vector..."));
}

TEST_F(CommandSetTest, OneActionServesEveryMenuTheToolBarAndTheKeys) {
    commands.fill(*mainWindow.menuBar(), kBar);
    QToolBar toolBar;
    toolBar.addAction(&commands.action(21));
    const auto menus = mainWindow.menuBar()->actions();
    EXPECT_EQ(findCommand(*menus[1]->menu<QMenu*>(), 21), &commands.action(21));
    EXPECT_EQ(findCommand(*mainWindow.menuBar(), 21), &commands.action(21));
    enableCommand(*mainWindow.menuBar(), 21, false);
    EXPECT_FALSE(toolBar.actions().first()->isEnabled());
}

TEST_F(CommandSetTest, ChoosingAnEntrySendsItsCommandAfterTheMenuSaidThatItOpens) {
    commands.fill(*mainWindow.menuBar(), kBar);
    test::show(mainWindow);
    QTest::keyClick(&mainWindow, Qt::Key_M, Qt::AltModifier);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    QTest::keyClick(menu, Qt::Key_X);
    EXPECT_THAT(window.log, ElementsAre("popup &Menu", "command 40010"));
}

TEST_F(CommandSetTest, AnOpeningMenuCanGreyAndCheckItsEntries) {
    window.greysNext = true;
    commands.fill(*mainWindow.menuBar(), kBar);
    test::show(mainWindow);
    QTest::keyClick(&mainWindow, Qt::Key_M, Qt::AltModifier);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    QTest::keyClick(menu, Qt::Key_N);
    EXPECT_THAT(window.log, ElementsAre("popup &Menu"));
    EXPECT_TRUE(commands.action(40004).isChecked());
    QTest::keyClick(menu, Qt::Key_Escape);
}

TEST_F(CommandSetTest, KeysSendTheirCommandWhetherOrNotAMenuHoldsIt) {
    const AcceleratorRow keys[] = {{"Ctrl+Q", 40010}, {"F5", 40032}, {"Ctrl+R", 40032}};
    commands.addKeys(keys);
    test::show(mainWindow);
    QTest::keyClick(&mainWindow, Qt::Key_Q, Qt::ControlModifier);
    QTest::keyClick(&mainWindow, Qt::Key_F5);
    QTest::keyClick(&mainWindow, Qt::Key_R, Qt::ControlModifier);
    commands.action(40032).setEnabled(false);
    QTest::keyClick(&mainWindow, Qt::Key_F5);
    EXPECT_THAT(window.log, ElementsAre("command 40010", "command 40032", "command 40032"));
}

TEST_F(CommandSetTest, AnEntryShowsAKeyThatSomebodyElseActsOn) {
    static constexpr MenuRow rows[] = {menuEntry(30, "&First", "1"), menuEntry(31, "&Second")};
    static constexpr MenuRow bar[] = {subMenu("&Menu", rows)};
    commands.fill(*mainWindow.menuBar(), bar);
    test::show(mainWindow);
    EXPECT_EQ(commands.action(30).shortcut().toString().toStdString(), "1");
    EXPECT_TRUE(commands.action(31).shortcut().isEmpty());
    QTest::keyClick(&mainWindow, Qt::Key_1);
    EXPECT_THAT(window.log, IsEmpty());
}

TEST_F(CommandSetTest, APublishedMenuIsLoadedByItsNumber) {
    const auto menu = commands.load(kLoadedId);
    ASSERT_NE(firstSubmenu(*menu), nullptr);
    EXPECT_THAT(texts(*firstSubmenu(*menu)), ElementsAre("&Units...", "&Vector..."));
    EXPECT_TRUE(commands.load(4999)->isEmpty());
    EXPECT_TRUE(commands.load(0)->isEmpty());
}

TEST_F(CommandSetTest, AMenuFilledInStepsSaysOnlyOnceThatItOpens) {
    QMenu menu;
    commands.fill(menu, kSettings);
    commands.fill(menu, kPages);
    Q_EMIT menu.aboutToShow();
    EXPECT_THAT(window.log, ElementsAre("popup "));
}

TEST_F(CommandSetTest, LookingForWhatIsNotThereFindsNothing) {
    QMenu menu;
    menu.addSeparator(); // has no command, whatever number is looked for
    menu.addMenu(QStringLiteral("Sub"));
    EXPECT_EQ(findCommand(menu, 0), nullptr);
    EXPECT_EQ(findCommand(menu, 7), nullptr);
    enableCommand(menu, 7, false);
    checkCommand(menu, 7, true);
    for (const QAction* entry : menu.actions()) {
        EXPECT_TRUE(entry->isEnabled());
        EXPECT_FALSE(entry->isCheckable());
    }
    EXPECT_EQ(firstSubmenu(QMenu()), nullptr);
}

TEST_F(CommandSetTest, TwoMenusOfOneNumberAreFatal) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_DEATH(MenuTableRecord(kLoadedId, kLoaded), "Two menus have the number 4901");
}

} // namespace
} // namespace raincast
