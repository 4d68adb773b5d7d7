// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// Marks, for as long as it lives, that the windows' thread waits for the navigator.
/// While any guard lives the program only repaints: the heartbeat, position sources, local sockets
/// and every other timer return at once, and user input waits. Guards nest.
class BusyGuard {
public:
    BusyGuard() { ++s_depth; }
    ~BusyGuard() { --s_depth; }
    BusyGuard(const BusyGuard&) = delete;
    BusyGuard& operator=(const BusyGuard&) = delete;

    [[nodiscard]] static bool active() { return s_depth > 0; }

private:
    static inline int s_depth = 0;
};

} // namespace raincast
