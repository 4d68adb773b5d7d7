// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <cstddef>
#include <vector>

namespace raincast {

/// How many typing errors turn one text into the other: a letter too many, too few or wrong, or two
/// neighbours swapped. Letter case does not count.
[[nodiscard]] std::size_t typingErrors(QStringView typed, QStringView meant);

/// The indices of all candidates that are the fewest typing errors away, in their order.
[[nodiscard]] std::vector<std::size_t>
fewestTypingErrors(QStringView typed, const std::vector<QStringView>& candidates);

} // namespace raincast
