// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <stop_token>
#include <thread>

namespace raincast {

/// Work in a thread of its own: at once, then at each wake() and at an interval. A wake() during
/// the work makes it work once more.
class PeriodicTask {
public:
    using Work = std::function<void(std::stop_token)>;

    /// `pause` is the least time between the end of one turn and the beginning of the next.
    PeriodicTask(std::chrono::milliseconds interval, std::chrono::milliseconds pause, Work work);
    /// Asks the work to stop and waits for it.
    ~PeriodicTask();
    PeriodicTask(const PeriodicTask&) = delete;
    PeriodicTask& operator=(const PeriodicTask&) = delete;

    /// May be called from any thread.
    void wake();

private:
    void run(const std::stop_token& stop);

    std::chrono::milliseconds m_interval;
    std::chrono::milliseconds m_pause;
    Work m_work;
    std::mutex m_mutex;
    std::condition_variable_any m_changed;
    bool m_woken = false;
    std::jthread m_thread;
};

} // namespace raincast
