// SPDX-License-Identifier: MIT
#pragma once

#include "core/clock.h"

#include <QString>

#include <optional>

namespace raincast {

/// A piece of the past that is shown again.
struct Replay {
    static constexpr int kMostSpeed = 60;

    FileTime begin = 0; ///< the weather's time at the instant of start
    int speed = 1;      ///< 1 to kMostSpeed times as fast as the world

    friend bool operator==(const Replay&, const Replay&) = default;
};

/// No weather before this time can be replayed: nobody keeps it.
inline const FileTime kFirstReplay = fromCalendar({2020, 1, 1, 0, 0});

/// Whether there can be weather at a replay's begin: from kFirstReplay to now, by Clock::real().
[[nodiscard]] bool canReplay(const Replay& replay);

/// Reads "2021-12-11T02:00Z" or "2021-12-11T02:00Zx10"; nothing for any other text, a time that
/// does not exist or a speed out of range.
[[nodiscard]] std::optional<Replay> readReplay(const QString& text);

/// What readReplay() reads; the speed is left out where it is 1.
[[nodiscard]] QString textOf(const Replay& replay);

/// A part of a folder's name for what is kept of a replay, the same at any speed.
[[nodiscard]] QString folderTextOf(const Replay& replay);

/// A clock that showed the begin of a replay at an instant of the world's clock, and runs faster
/// than that one. It never shows a time that the world has not come to.
class ReplayClock : public Clock {
public:
    /// `start` is the instant, by Clock::real().
    ReplayClock(const Replay& replay, FileTime start) : m_replay(replay), m_start(start) {}

    [[nodiscard]] FileTime now() const override;
    [[nodiscard]] FileTime until(FileTime time) const override;

    [[nodiscard]] const Replay& replay() const { return m_replay; }
    [[nodiscard]] FileTime start() const { return m_start; }

private:
    Replay m_replay;
    FileTime m_start;
};

} // namespace raincast
