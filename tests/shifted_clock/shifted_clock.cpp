// SPDX-License-Identifier: MIT
// The program's wall clock is not the machine's; clocks that measure durations are as they are.
// - CLOCK_SHIFT: by so many seconds it is ahead.
// - CLOCK_FILE: names a file of 8 bytes, a number of seconds more; it may change at any time, and
//   the clock jumps.
// - CLOCK_SPEED: so many times as fast it runs, from the Unix time CLOCK_START on.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstdlib>
#include <ctime>

namespace {

constexpr long kNanoseconds = 1'000'000'000;

long number(const char* name, long otherwise) {
    const char* const text = std::getenv(name);
    return text != nullptr ? std::atol(text) : otherwise;
}

const volatile long* jumps() {
    static constexpr long kNone = 0;
    const char* const name = std::getenv("CLOCK_FILE");
    const int file = name != nullptr ? open(name, O_RDONLY | O_CLOEXEC) : -1;
    void* const mapped =
        file < 0 ? MAP_FAILED : mmap(nullptr, sizeof(long), PROT_READ, MAP_SHARED, file, 0);
    if (file >= 0) {
        close(file);
    }
    return mapped == MAP_FAILED ? &kNone : static_cast<const volatile long*>(mapped);
}

struct Settings {
    long shift = number("CLOCK_SHIFT", 0);
    long speed = number("CLOCK_SPEED", 1);
    long start = number("CLOCK_START", 0);
    const volatile long* jump = jumps();
};

timespec shifted(clockid_t id) {
    timespec time{};
    syscall(SYS_clock_gettime, id, &time);
    if (id != CLOCK_REALTIME && id != CLOCK_REALTIME_COARSE) {
        return time;
    }
    static const Settings settings;
    if (settings.speed != 1) {
        const long passed = time.tv_nsec * settings.speed;
        time.tv_sec = settings.start + (time.tv_sec - settings.start) * settings.speed +
                      passed / kNanoseconds;
        time.tv_nsec = passed % kNanoseconds;
    }
    time.tv_sec += settings.shift + *settings.jump;
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
