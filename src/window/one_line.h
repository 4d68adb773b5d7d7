// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace raincast {

/// A name, which may come from a damaged file, as one line of a list or menu: at most 100
/// characters, of a longer one the first and three dots; a blank for each control character.
[[nodiscard]] QString oneLine(QString name);

} // namespace raincast
