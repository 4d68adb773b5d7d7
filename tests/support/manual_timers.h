// SPDX-License-Identifier: MIT
#pragma once

#include "core/timers.h"

#include <chrono>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

namespace raincast {

/// Alarms that go off when the test says so. Must outlive the alarms.
class ManualTimers : public Timers {
public:
    using Milliseconds = std::chrono::milliseconds;

    [[nodiscard]] std::unique_ptr<Alarm> make(std::function<void()> fired) override {
        return std::make_unique<ManualAlarm>(*this, std::move(fired));
    }

    /// The delays of all alarms that run, in the order they were started.
    [[nodiscard]] std::vector<int> running() const {
        std::vector<int> delays;
        for (const ManualAlarm* alarm : m_running) {
            delays.push_back(static_cast<int>(alarm->delay.count()));
        }
        return delays;
    }

    /// Fires the alarm that is due next, and adds its delay to the time that has passed. Returns
    /// the delay in milliseconds; -1 when none runs.
    int fire() {
        if (m_running.empty()) {
            return -1;
        }
        ManualAlarm* next = m_running.front();
        for (ManualAlarm* alarm : m_running) {
            if (alarm->due < next->due) {
                next = alarm;
            }
        }
        m_now = std::max(m_now, next->due);
        next->stop();
        const Milliseconds delay = next->delay;
        next->fired();
        return static_cast<int>(delay.count());
    }

    /// How long the alarms fired so far would have taken.
    [[nodiscard]] Milliseconds now() const { return m_now; }

private:
    struct ManualAlarm : Alarm {
        ManualAlarm(ManualTimers& owner, std::function<void()> function)
            : timers(owner), fired(std::move(function)) {}
        ~ManualAlarm() override { ManualAlarm::stop(); }
        void start(Milliseconds wait) override {
            stop();
            delay = wait;
            due = timers.m_now + wait;
            timers.m_running.push_back(this);
        }
        void stop() override { std::erase(timers.m_running, this); }

        ManualTimers& timers;
        std::function<void()> fired;
        Milliseconds delay{0};
        Milliseconds due{0};
    };

    std::vector<ManualAlarm*> m_running;
    Milliseconds m_now{0};
};

} // namespace raincast
