// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>

namespace raincast {

/// How fast a loop plays.
enum class LoopSpeed : std::uint8_t { half, normal, twice, fourTimes };

struct LoopSpeedRow {
    LoopSpeed speed;
    const char16_t* text;
    int milliseconds; ///< of a step
};
/// All speeds, in the order of their values.
inline constexpr std::array kLoopSpeeds = {
    LoopSpeedRow{LoopSpeed::half, u"\u00BD\u00D7", 1000},
    LoopSpeedRow{LoopSpeed::normal, u"1\u00D7", 500},
    LoopSpeedRow{LoopSpeed::twice, u"2\u00D7", 250},
    LoopSpeedRow{LoopSpeed::fourTimes, u"4\u00D7", 125},
};

/// What the user wants of loops and their bars, on all pages. It is kept in the settings record
/// "CLoop".
class LoopSetting {
public:
    /// When a loop's bar is shown: where there is much room for it, or as the user has chosen.
    enum class Bar : std::uint8_t { whereRoomIs, always, never };

    [[nodiscard]] static LoopSpeed speed();
    static void setSpeed(LoopSpeed speed);
    /// Whether the bar has times in UTC instead of those of the local clock.
    [[nodiscard]] static bool utc();
    static void setUtc(bool utc);
    [[nodiscard]] static Bar bar();
    static void setBar(Bar bar);

private:
    class Persistant;
};

} // namespace raincast
