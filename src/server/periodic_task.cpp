// SPDX-License-Identifier: MIT
#include "server/periodic_task.h"

namespace raincast {

PeriodicTask::PeriodicTask(
    std::chrono::milliseconds interval, std::chrono::milliseconds pause, Work work
)
    : m_interval(interval), m_pause(pause), m_work(std::move(work)),
      m_thread([this](const std::stop_token& stop) { run(stop); }) {}

PeriodicTask::~PeriodicTask() = default;

void PeriodicTask::wake() {
    {
        const std::lock_guard lock(m_mutex);
        m_woken = true;
    }
    m_changed.notify_all();
}

void PeriodicTask::run(const std::stop_token& stop) {
    while (!stop.stop_requested()) {
        m_work(stop);
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, stop, m_pause, [] { return false; });
        m_changed.wait_for(lock, stop, m_interval - m_pause, [this] { return m_woken; });
        m_woken = false;
    }
}

} // namespace raincast
