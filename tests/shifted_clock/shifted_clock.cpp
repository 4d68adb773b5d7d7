// SPDX-License-Identifier: MIT
// The program's wall clock is ahead of the machine's by CLOCK_SHIFT seconds; clocks that measure
// durations are as they are.
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>

namespace {

timespec shifted(clockid_t id) {
    timespec time{};
    syscall(SYS_clock_gettime, id, &time);
    const char* const shift = std::getenv("CLOCK_SHIFT");
    const bool isOfTheWall = id == CLOCK_REALTIME || id == CLOCK_REALTIME_COARSE;
    time.tv_sec += isOfTheWall && shift != nullptr ? std::atol(shift) : 0;
    return time;
}

} // namespace

extern "C" {

int clock_gettime(clockid_t id, timespec* to) noexcept {
    *to = shifted(id);
    return 0;
}

int gettimeofday(timeval* __restrict to, void* __restrict) noexcept {
    const timespec time = shifted(CLOCK_REALTIME);
    *to = {time.tv_sec, time.tv_nsec / 1000};
    return 0;
}

time_t time(time_t* to) noexcept {
    const time_t seconds = shifted(CLOCK_REALTIME).tv_sec;
    if (to != nullptr) {
        *to = seconds;
    }
    return seconds;
}
}
