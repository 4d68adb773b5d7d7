// SPDX-License-Identifier: MIT
#include "live/live_network.h"

#include "core/clock.h"
#include "live/live_source.h"

#include <algorithm>

namespace raincast {

namespace {

using std::chrono::milliseconds;

// A machine that slept wakes with another time.
constexpr FileTime kLongestSleep = 10 * kFileTimePerMinute;
constexpr FileTime kMillisecond = kFileTimePerSecond / 1000;

milliseconds until(FileTime next) {
    const FileTime wait = std::clamp<FileTime>(next - Clock::real().now(), 0, kLongestSleep);
    return milliseconds((wait + kMillisecond - 1) / kMillisecond);
}

} // namespace

void LiveNetwork::start(LiveSource& source) {
    m_thread = std::jthread([this, &source](const std::stop_token& stop) {
        while (!stop.stop_requested()) {
            m_fetcher.pump(until(source.turn()));
        }
    });
}

void LiveNetwork::stop() {
    m_thread.request_stop();
    m_fetcher.wake();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

} // namespace raincast
