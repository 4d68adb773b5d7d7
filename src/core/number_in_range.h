// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <optional>

namespace raincast {

/// The whole number that a text is, spaces around it left out; none for any other text and for a
/// number below `least` or above `most`.
[[nodiscard]] inline std::optional<int> numberInRange(QStringView text, int least, int most) {
    bool good = false;
    const int number = text.trimmed().toInt(&good);
    return good && least <= number && number <= most ? std::optional(number) : std::nullopt;
}

} // namespace raincast
