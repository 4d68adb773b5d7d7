// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <chrono>
#include <deque>

namespace raincast {

/// Measures whether a body comes too slowly: over the last `window` fewer than `bytesPerSecond` on
/// average. Keeps a few dozen marks at most.
class StallMeter {
public:
    using Time = std::chrono::steady_clock::time_point;

    StallMeter(std::chrono::milliseconds window, int bytesPerSecond)
        : m_window(window), m_bytesPerSecond(bytesPerSecond) {}

    /// Notes that `bytes` of the body have come altogether by `now`; the first call starts the
    /// measurement. Returns whether the body has stalled. Times must not go backwards.
    [[nodiscard]] bool stalled(Time now, qint64 bytes);

private:
    struct Mark {
        Time time;
        qint64 bytes;
    };

    std::chrono::milliseconds m_window;
    int m_bytesPerSecond;
    std::deque<Mark> m_marks; ///< oldest first; the first one is the last that is a window old
};

} // namespace raincast
