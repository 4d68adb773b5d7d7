// SPDX-License-Identifier: MIT
#pragma once

#include "core/listener.h"

#include <cstdint>

namespace raincast {

/// The program's slow clock: the main window's timer beats it every 100 ms, and every counter does
/// its work at each period-th beat.
class CHeartbeat {
public:
    class Counter;

    /// Gives a pseudo-random value from 0 to 32767.
    using PhaseSource = int (*)();

    /// One beat. While the program is busy (BusyGuard), or while there is no counter, it does
    /// nothing at all. When more than 20 s have passed since the beat before, the clock has jumped
    /// (the computer slept, or the time was set): every counter is resynchronised and none counts.
    /// A clock that was set back counts as usual.
    void Beat();

    /// The UTC time of the latest beat; 0 before the first.
    [[nodiscard]] FileTime now() const { return m_now; }

    /// The one that the program's timer beats.
    [[nodiscard]] static CHeartbeat& program();

    /// Where counters take their phases from; null puts the program's own generator back.
    static void usePhaseSource(PhaseSource source);

private:
    FileTime m_now = 0;
    FileTime m_previous = 0;
};

/// Work to be done at every period-th heartbeat, from the first to the period-th beat on: counters
/// of equal periods are spread over different beats by chance.
class CHeartbeat::Counter : public Listener<CHeartbeat> {
public:
    /// Period in heartbeats, at least 1.
    explicit Counter(std::int32_t period);

    /// Nothing: the beat itself counts.
    void onPublished(CHeartbeat& heartbeat) override;

    /// The work. May end the counter.
    virtual void Tick() = 0;

    /// Called instead of counting when the clock has jumped.
    virtual void Resync() {}

private:
    friend class CHeartbeat;
    void count();

    std::int32_t m_countdown;
    std::int32_t m_period;
};

} // namespace raincast
