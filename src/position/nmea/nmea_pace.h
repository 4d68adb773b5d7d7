// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace raincast {

/// The pace at which a recorded log was written, from the times of day of its RMC and GGA
/// sentences. The sentences between two of them were written along with the first.
///
/// A time that goes back by up to two seconds is that of a slower sentence, and nothing waits for
/// it; one that goes back further starts again, as after a receiver's restart. A gap takes up to
/// ten seconds, time enough to see that positions fail to come.
class NmeaPace {
public:
    static constexpr std::chrono::milliseconds kLongestGap{10'000};

    /// How many times as fast as it was written; 0 means at once.
    explicit NmeaPace(double rate) : m_rate(rate) {}

    /// How long after the line before this one is due.
    [[nodiscard]] std::chrono::milliseconds waitBefore(std::string_view line);

private:
    double m_rate;
    std::optional<std::chrono::milliseconds> m_latest; ///< time of day
};

} // namespace raincast
