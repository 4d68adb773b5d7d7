// SPDX-License-Identifier: MIT
#pragma once

#include "core/heartbeat.h"

namespace raincast {

/// Gives all counters made while it lives the phase that the test sets.
class ManualPhase {
public:
    explicit ManualPhase(int phase = 0) {
        s_phase = phase;
        CHeartbeat::usePhaseSource([] { return s_phase; });
    }
    ~ManualPhase() { CHeartbeat::usePhaseSource(nullptr); }
    ManualPhase(const ManualPhase&) = delete;
    ManualPhase& operator=(const ManualPhase&) = delete;

    static void set(int phase) { s_phase = phase; }

private:
    static inline int s_phase = 0;
};

} // namespace raincast
