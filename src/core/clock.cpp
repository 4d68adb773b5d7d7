// SPDX-License-Identifier: MIT
#include "core/clock.h"

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <ratio>

namespace raincast {

namespace {

using Units = std::chrono::duration<FileTime, std::ratio<1, kFileTimePerSecond>>;

// A receiver tells whole seconds, some time after they have begun.
constexpr FileTime kTolerance = 3 * kFileTimePerSecond;

const Clock* clockInUse = nullptr;
const Clock* replayClock = nullptr;

// Not the system's time, which may be set meanwhile, nor the steady clock, which sleeps when the
// machine does.
FileTime sinceStart() {
    timespec passed{};
    clock_gettime(CLOCK_BOOTTIME, &passed);
    const auto whole = std::chrono::seconds(passed.tv_sec);
    return std::chrono::duration_cast<Units>(whole + std::chrono::nanoseconds(passed.tv_nsec))
        .count();
}

} // namespace

const Clock& Clock::current() {
    return replayClock != nullptr ? *replayClock : real();
}

const Clock& Clock::real() {
    return clockInUse != nullptr ? *clockInUse : SystemClock::ofProcess();
}

void Clock::use(const Clock* clock) {
    clockInUse = clock;
}

void Clock::replayBy(const Clock* clock) {
    replayClock = clock;
}

FileTime Clock::latestNow() {
    static const FileTime kFarAhead = fromCalendar({30'000, 1, 1, 0, 0});
    return current().isKnown() ? current().now() : kFarAhead;
}

SystemClock& SystemClock::ofProcess() {
    static SystemClock clock;
    return clock;
}

FileTime SystemClock::system() const {
    const auto sinceUnixEpoch = std::chrono::system_clock::now().time_since_epoch();
    return kUnixEpoch + std::chrono::duration_cast<Units>(sinceUnixEpoch).count();
}

FileTime SystemClock::now() const {
    const FileTime time = system();
    const FileTime ahead = m_ahead;
    return time >= kEarliest || ahead == 0 ? time : sinceStart() + ahead;
}

Clock::Teller SystemClock::teller() const {
    if (system() >= kEarliest) {
        return Teller::system;
    }
    return m_ahead != 0 ? Teller::receiver : Teller::nobody;
}

void SystemClock::hear(FileTime utc) {
    const FileTime ahead = utc - sinceStart();
    const bool isNews = m_ahead == 0 || std::abs(ahead - m_ahead) > kTolerance;
    if (isNews && utc >= kEarliest && system() < kEarliest) {
        m_ahead = ahead;
    }
}

} // namespace raincast
