// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace raincast {

/// Two things measured in turn, A B A B …, so that a machine whose speed drifts treats both alike.
struct Ratio {
    double firstMilliseconds;  ///< median
    double secondMilliseconds; ///< median
    double median;             ///< of the ratios first / second, pair by pair
    double least;
    double most;
};

/// Measures both `pairs` times, after one uncounted run of each. `tidyUp`, if given, is called
/// after each pair and counts for neither.
[[nodiscard]] Ratio ratioOf(
    int pairs, const std::function<void()>& first, const std::function<void()>& second,
    const std::function<void()>& tidyUp = {}
);

/// The same of what both take of processors, in all threads of this process: other programs hardly
/// change that. Not for what waits.
[[nodiscard]] Ratio processorRatioOf(
    int pairs, const std::function<void()>& first, const std::function<void()>& second,
    const std::function<void()>& tidyUp = {}
);

/// The same where both say themselves what they took, in milliseconds.
[[nodiscard]] Ratio toldRatioOf(
    int pairs, const std::function<double()>& first, const std::function<double()>& second,
    const std::function<void()>& tidyUp = {}
);

} // namespace raincast
