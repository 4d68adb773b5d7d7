// SPDX-License-Identifier: MIT
#include "support/menu.h"

#include "support/pointer.h"

#include <QAction>
#include <QApplication>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

namespace raincast::test {

namespace {

QString shownText(const QAction& entry) {
    return entry.text().remove(u'&');
}

bool canBeChosen(const QAction& entry) {
    return entry.isVisible() && entry.isEnabled() && !entry.isSeparator();
}

enum class Kind { command, submenu };

/// A menu or menu bar's entry of that kind and text that can be chosen; null, and a failure,
/// without one.
QAction* entryOf(const QWidget& menu, const QString& text, Kind kind) {
    for (QAction* entry : menu.actions()) {
        const bool isMenu = entry->menu<QMenu*>() != nullptr;
        if (canBeChosen(*entry) && shownText(*entry) == text && isMenu == (kind == Kind::submenu)) {
            return entry;
        }
    }
    ADD_FAILURE() << "no entry to choose: " << qPrintable(text);
    return nullptr;
}

QWindow* windowOf(const QWidget& widget) {
    return widget.window()->windowHandle();
}

template<typename Menu>
void click(Menu& menu, QAction* entry) {
    const QPoint place = menu.actionGeometry(entry).center();
    moveTo(menu, place);
    test::click(menu, place);
}

void type(QMenuBar& bar, QAction* entry) {
    bar.window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(bar.window()));
    const QKeyCombination keys = QKeySequence::mnemonic(entry->text())[0];
    QTest::keyClick(windowOf(bar), keys.key(), keys.keyboardModifiers());
}

void type(QMenu& menu, QAction* entry) {
    for (qsizetype most = menu.actions().size(); menu.activeAction() != entry; --most) {
        ASSERT_GT(most, 0) << "out of the keys' reach: " << qPrintable(entry->text());
        QTest::keyClick(windowOf(menu), Qt::Key_Down);
    }
    const bool opens = entry->menu<QMenu*>() != nullptr;
    QTest::keyClick(windowOf(menu), opens ? Qt::Key_Right : Qt::Key_Return);
}

template<typename Menu>
QAction* choose(Menu& menu, const QString& text, Kind kind, Hand hand) {
    QAction* const entry = entryOf(menu, text, kind);
    if (entry != nullptr) {
        hand == Hand::mouse ? click(menu, entry) : type(menu, entry);
    }
    return entry;
}

/// The submenu of that text, opened; null, and a failure, without one.
template<typename Menu>
QMenu* open(Menu& menu, const QString& text, Hand hand) {
    const QAction* const entry = choose(menu, text, Kind::submenu, hand);
    auto* const submenu = entry != nullptr ? entry->menu<QMenu*>() : nullptr;
    EXPECT_TRUE(submenu == nullptr || QTest::qWaitFor([submenu] { return submenu->isVisible(); }))
        << qPrintable(text);
    return submenu;
}

void addWays(const QMenu& menu, const QStringList& way, std::vector<QStringList>& ways) {
    for (const QAction* entry : menu.actions()) {
        const auto* const submenu = entry->menu<QMenu*>();
        if (submenu != nullptr && canBeChosen(*entry)) {
            addWays(*submenu, way + QStringList(shownText(*entry)), ways);
        } else if (canBeChosen(*entry)) {
            ways.push_back(way + QStringList(shownText(*entry)));
        }
    }
}

} // namespace

void chooseInMenu(QMenuBar& bar, const QStringList& path, Hand hand) {
    QMenu* menu = open(bar, path.value(0), hand);
    for (qsizetype i = 1; menu != nullptr && i + 1 < path.size(); ++i) {
        menu = open(*menu, path[i], hand);
    }
    if (menu != nullptr) {
        chooseInOpenMenu(*menu, path.last(), hand);
    }
}

void chooseInOpenMenu(QMenu& menu, const QString& text, Hand hand) {
    choose(menu, text, Kind::command, hand);
}

std::vector<QStringList> waysIn(QMenuBar& bar) {
    std::vector<QStringList> ways;
    for (const QAction* entry : bar.actions()) {
        if (const QMenu* const menu = open(bar, shownText(*entry), Hand::mouse)) {
            addWays(*menu, {shownText(*entry)}, ways);
            QTest::keyClick(windowOf(*menu), Qt::Key_Escape);
        }
    }
    return ways;
}

QStringList choicesIn(const QMenu& menu) {
    QStringList choices;
    for (const QAction* entry : menu.actions()) {
        if (canBeChosen(*entry)) {
            choices.append(shownText(*entry));
        }
    }
    return choices;
}

} // namespace raincast::test
