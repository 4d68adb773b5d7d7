// SPDX-License-Identifier: MIT
#include "core/clock.h"

#include <chrono>
#include <ratio>

namespace raincast {

namespace {

const SystemClock systemClock;
const Clock* clockInUse = nullptr;
const Clock* replayClock = nullptr;

} // namespace

const Clock& Clock::current() {
    return replayClock != nullptr ? *replayClock : real();
}

const Clock& Clock::real() {
    return clockInUse != nullptr ? *clockInUse : systemClock;
}

void Clock::use(const Clock* clock) {
    clockInUse = clock;
}

void Clock::replayBy(const Clock* clock) {
    replayClock = clock;
}

FileTime SystemClock::now() const {
    using Units = std::chrono::duration<FileTime, std::ratio<1, kFileTimePerSecond>>;
    const auto sinceUnixEpoch = std::chrono::system_clock::now().time_since_epoch();
    return kUnixEpoch + std::chrono::duration_cast<Units>(sinceUnixEpoch).count();
}

} // namespace raincast
