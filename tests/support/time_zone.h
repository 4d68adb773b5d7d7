// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <ctime>

namespace raincast {

/// Puts the process into a time zone, given as TZ takes it, for as long as it lives.
class TimeZone {
public:
    explicit TimeZone(const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    }
    ~TimeZone() {
        unsetenv("TZ");
        tzset();
    }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;
};

} // namespace raincast
