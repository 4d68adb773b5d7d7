// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <limits>

namespace raincast {

/// A foreign number as a float; 0 for one that no float can hold, and for not-a-number.
[[nodiscard]] inline float finiteFloat(double number) {
    // Not-a-number fails the comparison.
    return std::abs(number) <= std::numeric_limits<float>::max() ? static_cast<float>(number) : 0;
}

} // namespace raincast
