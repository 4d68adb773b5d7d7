// SPDX-License-Identifier: MIT
#pragma once

#include "net/http_settings.h"

#include <chrono>

namespace raincast {

/// Limits of two seconds, which no server of a test reaches unless it means to, for as long as it
/// lives; what was set before comes back at its end.
class ScopedHttp {
public:
    ScopedHttp() : m_limits(httpLimits()) { limitWaits(std::chrono::seconds(2)); }
    ~ScopedHttp() { httpLimits() = m_limits; }
    ScopedHttp(const ScopedHttp&) = delete;
    ScopedHttp& operator=(const ScopedHttp&) = delete;

    /// For a test that waits for a limit to be reached.
    static void waitBriefly() { limitWaits(std::chrono::milliseconds(200)); }

private:
    static void limitWaits(std::chrono::milliseconds time) {
        httpLimits().connectTimeout = httpLimits().stallTime = time;
    }

    HttpLimits m_limits;
};

} // namespace raincast
