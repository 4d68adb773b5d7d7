// SPDX-License-Identifier: MIT
#pragma once

#include "core/busy_guard.h"

#include <chrono>
#include <functional>

namespace raincast {

/// One wait for the navigator, or for another of its clients: the one thread stands still, but the
/// program is marked as busy and its hook is called in between.
class NavigatorWaiting {
public:
    /// Lets exposures through, and nothing else. False ends the wait: the program is to end.
    using Hook = std::function<bool()>;

    /// The hook of all waits, called every 100 ms; an empty function removes it.
    static void useHook(Hook hook);

    /// To be called at least every 100 ms of the wait; false says to give it up.
    [[nodiscard]] bool goesOn();

    static constexpr std::chrono::milliseconds kHookInterval{100};

private:
    const BusyGuard m_busy;
    std::chrono::steady_clock::time_point m_last = std::chrono::steady_clock::now();
};

} // namespace raincast
