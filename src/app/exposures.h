// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// While it lives, a transfer that waits lets the program's windows be painted, so that a desktop
/// does not take them for dead. Input waits for the transfer. Timers and sockets look at BusyGuard
/// themselves: not every event loop below Qt can hold them back. A wait for the navigator, which
/// may have no end, works the same way, and ends when the program is asked to end.
class Exposures {
public:
    Exposures();
    ~Exposures();
    Exposures(const Exposures&) = delete;
    Exposures& operator=(const Exposures&) = delete;
};

} // namespace raincast
