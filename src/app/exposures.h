// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// While it lives, a transfer that waits lets the program's windows be painted, so that a desktop
/// does not take them for dead. Input waits for the transfer. Timers and sockets do so by looking
/// at BusyGuard themselves: not every event loop below Qt can hold them back.
class Exposures {
public:
    Exposures();
    ~Exposures();
    Exposures(const Exposures&) = delete;
    Exposures& operator=(const Exposures&) = delete;
};

} // namespace raincast
