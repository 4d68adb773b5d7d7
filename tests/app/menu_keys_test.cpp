// SPDX-License-Identifier: MIT
// What the menus teach: letters and keys; and what a reader of the screen finds in the window.
#include "app/viewer_harness.h"
#include "letters/mnemonics.h"
#include "player/loop_setting.h"
#include "support/dialog_script.h"
#include "window/commands.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QListWidget>
#include <QMenu>
#include <QToolBar>

#include <map>
#include <set>
#include <vector>

namespace raincast {
namespace {

using test::DialogScript;

class MenuKeysTest : public test::ViewerHarness {
protected:
    MenuKeysTest() { options.siteId = "MUX"; }

    static QMenuBar& barOf(Viewer& viewer) { return *viewer.window()->frame()->menuBar(); }
    /// All menus of a bar, from the top, each as it is when it has opened.
    static void forEachMenu(QMenu& menu, const std::function<void(const QMenu&)>& look) {
        Q_EMIT menu.aboutToShow();
        look(menu);
        // A menu that opens has the entries of pages made anew.
        std::vector<QMenu*> submenus;
        for (const QAction* entry : menu.actions()) {
            if (auto* const submenu = entry->menu<QMenu*>()) {
                submenus.push_back(submenu);
            }
        }
        for (QMenu* const submenu : submenus) {
            forEachMenu(*submenu, look);
        }
    }
    static QChar letterOf(const QAction& entry) { return mnemonicOf(entry.text()); }
};

TEST_F(MenuKeysTest, EachEntryHasALetterOfItsOwn) {
    run([](Viewer& viewer) {
        int entries = 0;
        forEachMenu(*viewer.window()->pageMenu(), [&entries](const QMenu& menu) {
            std::set<QChar> letters;
            for (const QAction* entry : menu.actions()) {
                if (entry->isSeparator() || !entry->isVisible()) {
                    continue;
                }
                ++entries;
                const std::string name = (menu.title() + u'/' + entry->text()).toStdString();
                EXPECT_FALSE(letterOf(*entry).isNull()) << name << " has no letter";
                EXPECT_TRUE(letters.insert(letterOf(*entry)).second) << name << " has another's";
            }
        });
        EXPECT_GT(entries, 40);
    });
}

TEST_F(MenuKeysTest, EachCommandShowsItsKey) {
    const std::map<int, const char*> keys = {
        {kPreviousPage, "PgUp"}, {kNextPage, "PgDown"}, {kFullScreen, "F11"}, {kExit, "Ctrl+Q"},
        {kShowKeys, "F1"},       {kPlayLoop, "Space"},  {kStepBack, ","},     {kStepForward, "."},
        {kFirstProduct, "1"},    {kLastProduct, "7"},
    };
    run([&keys](Viewer& viewer) {
        std::set<int> seen;
        forEachMenu(*viewer.window()->pageMenu(), [&](const QMenu& menu) {
            for (const QAction* entry : menu.actions()) {
                if (const auto key = keys.find(commandOf(*entry)); key != keys.end()) {
                    seen.insert(key->first);
                    EXPECT_EQ(entry->shortcut().toString().toStdString(), key->second);
                }
            }
        });
        EXPECT_EQ(seen.size(), keys.size());
        const QStringList tips = {"Zoom in (+)", "Zoom out (-)", "Update (F5)"};
        const auto shown = [&viewer] {
            QStringList texts;
            const auto* const bar = viewer.window()->frame()->findChild<QToolBar*>();
            for (const QAction* tool : bar->actions()) {
                if (!tool->isSeparator()) {
                    texts.append(tool->toolTip());
                }
            }
            return texts;
        };
        // The window's next beat finds that nothing is loading.
        EXPECT_TRUE(QTest::qWaitFor([&] { return shown() == tips; }))
            << shown().join(", ").toStdString();
    });
}

TEST_F(MenuKeysTest, F1OpensTheSheetOfKeys) {
    run([](Viewer& viewer) {
        DialogScript script;
        script.expect("Keys", [](QDialog& dialog) {
            EXPECT_GT(dialog.findChild<QListWidget*>()->count(), 10);
        });
        keyInWindow(viewer, Qt::Key_F1);
    });
}

TEST_F(MenuKeysTest, F10AndAltOpenTheMenu) {
    run([](Viewer& viewer) {
        for (const Qt::Key key : {Qt::Key_F10, Qt::Key_Alt}) {
            keyInWindow(viewer, key);
            test::settle();
            EXPECT_EQ(QApplication::activePopupWidget(), viewer.window()->pageMenu()) << key;
            QTest::keyClick(viewer.window()->pageMenu(), Qt::Key_Escape);
            test::settle();
            EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
            if (viewer.window()->frame()->menuBar()->hasFocus()) {
                QTest::keyClick(viewer.window()->frame()->menuBar(), Qt::Key_Escape);
            }
        }
    });
}

TEST_F(MenuKeysTest, EveryControlHasANameAndARole) {
    LoopSetting::setBar(LoopSetting::Bar::always);
    run([](Viewer& viewer) {
        DialogScript script;
        script.expect("Animation", [](QDialog& dialog) {
            for (auto* box : dialog.findChildren<QAbstractButton*>()) {
                if (box->text().remove(u'&') == QStringLiteral("Enable Animation")) {
                    box->setChecked(true);
                }
            }
            QTest::keyClick(&dialog, Qt::Key_Return);
        });
        choose(viewer, {"Menu", "Weather", "Animation"});
        finish(viewer);
        for (int i = 0; i < 3; ++i) { // the bar follows a painting
            test::settle();
        }
        int controls = 0;
        for (QWidget* widget : viewer.window()->frame()->findChildren<QWidget*>()) {
            const bool isControl = widget->focusPolicy() != Qt::NoFocus ||
                                   qobject_cast<const QAbstractButton*>(widget) != nullptr;
            if (!widget->isVisible() || !isControl) {
                continue;
            }
            ++controls;
            auto* const seen = QAccessible::queryAccessibleInterface(widget);
            ASSERT_NE(seen, nullptr) << widget->metaObject()->className();
            EXPECT_FALSE(seen->text(QAccessible::Name).isEmpty())
                << widget->metaObject()->className();
            EXPECT_NE(seen->role(), QAccessible::NoRole) << widget->metaObject()->className();
        }
        EXPECT_GE(controls, 9) << "three tool buttons and the bar's six";
    });
    LoopSetting::setBar(LoopSetting::Bar::whereRoomIs);
}

} // namespace
} // namespace raincast
