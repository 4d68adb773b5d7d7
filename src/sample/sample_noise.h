// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace raincast {

/// Repeatable chance, the same on every machine: numbers made of numbers by integer arithmetic up
/// to the last step.
[[nodiscard]] inline std::uint64_t mixed(std::uint64_t value) {
    // The finaliser of SplitMix64.
    value += 0x9E3779B97F4A7C15U;
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31);
}
[[nodiscard]] inline std::uint64_t mixed(std::uint64_t seed, std::int64_t value) {
    return mixed(seed ^ mixed(static_cast<std::uint64_t>(value)));
}

/// 0 to below 1.
[[nodiscard]] inline double asFraction(std::uint64_t bits) {
    return static_cast<double>(bits >> 11) / 9007199254740992.0; // 2 to the 53rd
}

/// A row of throws from one seed. An expression has one throw at most: compilers differ in the
/// order in which they throw several.
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
