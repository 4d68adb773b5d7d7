// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <atomic>

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

    /// Who tells the time. Nobody does where a clock cannot be right, such as one that began in
    /// 1970 when the device was switched on.
    enum class Teller { system, receiver, nobody };
    [[nodiscard]] virtual Teller teller() const { return Teller::system; }

    /// False while nobody tells the time: the clock counts, but what has a date lies anywhere.
    [[nodiscard]] bool isKnown() const { return teller() != Teller::nobody; }

    /// The latest that it can be now by current(): so far ahead that nothing is of the future while
    /// the time is not known.
    [[nodiscard]] static FileTime latestNow();

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

/// The system's clock. While that one shows a time at which this program did not exist, the time
/// goes by what a receiver tells, once it has told one. For any thread.
class SystemClock : public Clock {
public:
    /// No computer whose clock is right shows less.
    static inline const FileTime kEarliest = fromCalendar({2026, 1, 1, 0, 0});

    [[nodiscard]] FileTime now() const override;
    [[nodiscard]] Teller teller() const override;

    /// A receiver says that it is this time (UTC). Changes nothing where the system's clock may be
    /// right, or the receiver's time cannot be.
    void hear(FileTime utc);

    /// The one of this process.
    [[nodiscard]] static SystemClock& ofProcess();

protected:
    /// The system's time. Overridden by tests alone.
    [[nodiscard]] virtual FileTime system() const;

private:
    std::atomic<FileTime> m_ahead = 0; ///< of the time since the machine's start; 0: not heard
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
