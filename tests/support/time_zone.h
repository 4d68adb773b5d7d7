// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace raincast {

/// Puts the process into a time zone, given as TZ takes it, for as long as it lives.
class TimeZone {
public:
    explicit TimeZone(const char* zone) {
        if (const char* before = std::getenv("TZ")) {
            m_before = before;
        }
        enter(zone);
    }
    ~TimeZone() { enter(m_before ? m_before->c_str() : nullptr); }
    TimeZone(const TimeZone&) = delete;
    TimeZone& operator=(const TimeZone&) = delete;

private:
    static void enter(const char* zone) {
        static_cast<void>(zone != nullptr ? setenv("TZ", zone, 1) : unsetenv("TZ"));
        tzset();
    }

    std::optional<std::string> m_before;
};

} // namespace raincast
