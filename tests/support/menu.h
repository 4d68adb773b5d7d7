// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

class QMenuBar;

namespace raincast::test {

/// Clicks through a menu bar and its submenus to an entry, as a person does: chooseInMenu(bar,
/// {"Menu", "Weather", "Layers"}). Texts are without mnemonics. Returns when the entry's command
/// has been carried out; fails the test when there is no such way.
void chooseInMenu(QMenuBar& bar, const QStringList& path);

} // namespace raincast::test
