// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace raincast {

/// Chance that is the same everywhere and always: numbers made of numbers, with nothing but
/// integer arithmetic up to the last step.
[[nodiscard]] std::uint64_t mixed(std::uint64_t value);
[[nodiscard]] inline std::uint64_t mixed(std::uint64_t seed, std::int64_t value) {
    return mixed(seed ^ mixed(static_cast<std::uint64_t>(value)));
}

/// 0 to below 1.
[[nodiscard]] double asFraction(std::uint64_t bits);

/// A row of throws from one seed.
class Dice {
public:
    explicit Dice(std::uint64_t seed) : m_state(seed) {}

    /// `low` to below `high`.
    [[nodiscard]] double between(double low, double high);
    /// About 0, rarely beyond ±2.
    [[nodiscard]] double around();

private:
    std::uint64_t m_state;
};

/// Smooth noise over a plane, -1 to 1, with hills about one unit wide.
[[nodiscard]] double smoothNoise(std::uint64_t seed, double x, double y);

/// The same with finer and finer hills on top, each half as high; about -1 to 1.
[[nodiscard]] double fractalNoise(std::uint64_t seed, double x, double y, int octaves);

/// 0 up to `from`, 1 beyond `to`, smooth in between; `from` may be the greater one.
[[nodiscard]] double smoothStep(double from, double to, double value);

} // namespace raincast
