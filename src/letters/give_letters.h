// SPDX-License-Identifier: MIT
#pragma once

class QDialog;
class QMenu;

namespace raincast {

// Whatever the user chooses has a letter for the keyboard: where nobody has marked one, such as for
// the names of the user's pages, a free one is marked before it is seen.

void giveLetters(const QMenu& menu);
/// To the dialog's buttons and check boxes; the letters of its labels are taken.
void giveLetters(const QDialog& dialog);

} // namespace raincast
