// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

namespace raincast {

/// Where "now" comes from. The program uses one clock; tests put their own in its place. While
/// weather of the past is replayed the weather's clock is another one than the world's.
class Clock {
public:
    virtual ~Clock() = default;

    /// The present UTC time, never 0.
    [[nodiscard]] virtual FileTime now() const = 0;

    /// How long until this clock shows a time, in the world's time; below 0 when it is past.
    [[nodiscard]] virtual FileTime until(FileTime time) const { return time - now(); }

    /// The weather's clock: the world's unless one of a replay is set.
    [[nodiscard]] static const Clock& current();

    /// The world's clock, for receivers, waits and rests: the system's until another one is set.
    [[nodiscard]] static const Clock& real();

    /// Puts a clock in use for the whole program; null puts the system's back. The clock is
    /// borrowed and must outlive its use.
    static void use(const Clock* clock);

    /// Puts a clock in use for the weather alone; null puts the world's back. Borrowed as well.
    static void replayBy(const Clock* clock);
};

/// The system's clock.
class SystemClock : public Clock {
public:
    [[nodiscard]] FileTime now() const override;
};

/// A clock that stands still until it is set or advanced, for tests.
class ManualClock : public Clock {
public:
    explicit ManualClock(FileTime start) : m_now(start) {}

    [[nodiscard]] FileTime now() const override { return m_now; }
    void set(FileTime time) { m_now = time; }
    void advance(FileTime units) { m_now += units; }

private:
    FileTime m_now;
};

} // namespace raincast
