// SPDX-License-Identifier: MIT
#include "support/menu.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

#include <gtest/gtest.h>

namespace raincast::test {

namespace {

/// A menu or menu bar's entry of that text; null without one.
QAction* entryOf(const QWidget& menu, const QString& text) {
    for (QAction* action : menu.actions()) {
        if (action->isVisible() && action->text().remove(u'&') == text) {
            return action;
        }
    }
    return nullptr;
}

/// Clicks an entry; null, unless it opens a submenu.
template<typename Menu>
QMenu* clickEntry(Menu& menu, const QString& text) {
    QAction* entry = entryOf(menu, text);
    if (entry == nullptr || !entry->isEnabled()) {
        ADD_FAILURE() << "no entry to click: " << qPrintable(text);
        return nullptr;
    }
    QMenu* submenu = entry->menu();
    QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(entry).center());
    if (submenu != nullptr) {
        EXPECT_TRUE(QTest::qWaitFor([submenu] { return submenu->isVisible(); }))
            << qPrintable(text);
    }
    return submenu;
}

} // namespace

void chooseInMenu(QMenuBar& bar, const QStringList& path) {
    QMenu* menu = clickEntry(bar, path.value(0));
    for (const QString& text : path.mid(1)) {
        ASSERT_NE(menu, nullptr) << "no submenu before " << qPrintable(text);
        menu = clickEntry(*menu, text);
    }
    EXPECT_EQ(menu, nullptr) << "a submenu is no command";
}

} // namespace raincast::test
