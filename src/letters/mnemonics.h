// SPDX-License-Identifier: MIT
#pragma once

#include <QChar>
#include <QString>
#include <QStringList>
#include <QStringView>

namespace raincast {

// Letters that choose an entry of a menu, or a control with Alt: a text marks its letter by an
// ampersand before it; two of them stand for one that is seen.

/// The letter or digit that a text marks, in lower case; null if it marks none.
[[nodiscard]] QChar mnemonicOf(QStringView text);

/// Marks a letter in each text that has none, one that no other text of the list marks: the first
/// of the text or of one of its words, else any. A text without a letter that is free stays as it
/// is, and so does an empty one.
[[nodiscard]] QStringList withMnemonics(QStringList texts);

} // namespace raincast
