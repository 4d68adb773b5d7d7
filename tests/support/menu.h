// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

#include <vector>

class QAction;
class QMenu;
class QMenuBar;

namespace raincast::test {

/// What a person works a program with.
enum class Hand { mouse, keys };

/// Goes through a menu bar and its submenus to an entry, as a person does: chooseInMenu(bar,
/// {"Menu", "Weather", "Layers"}). Texts are without mnemonics. Returns when the entry's command
/// has been carried out; fails the test when there is no such way.
void chooseInMenu(QMenuBar& bar, const QStringList& path, Hand hand = Hand::mouse);

/// Chooses an entry of a menu that is open.
void chooseInOpenMenu(QMenu& menu, const QString& text, Hand hand = Hand::mouse);

/// The ways of a menu bar to all entries that can be chosen at present, in order. Opens each of its
/// menus to see.
[[nodiscard]] std::vector<QStringList> waysIn(QMenuBar& bar);

/// The texts of a menu's entries that can be chosen at present; submenus are not looked into.
[[nodiscard]] QStringList choicesIn(const QMenu& menu);

} // namespace raincast::test
