// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// While it lives, a wait for the navigator lets the program's windows be painted, so that a
/// desktop does not take them for dead, and ends when the program is asked to end. Input stays in
/// the queue meanwhile. Timers and sockets look at BusyGuard themselves: not every event loop below
/// Qt can hold them back.
class Exposures {
public:
    Exposures();
    ~Exposures();
    Exposures(const Exposures&) = delete;
    Exposures& operator=(const Exposures&) = delete;
};

} // namespace raincast
