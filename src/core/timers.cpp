// SPDX-License-Identifier: MIT
#include "core/timers.h"

#include <QTimer>

#include <utility>

namespace raincast {

namespace {

class QtAlarm : public Alarm {
public:
    explicit QtAlarm(std::function<void()> fired) {
        m_timer.setSingleShot(true);
        QObject::connect(&m_timer, &QTimer::timeout, std::move(fired));
    }
    void start(std::chrono::milliseconds delay) override { m_timer.start(delay); }
    void stop() override { m_timer.stop(); }

private:
    QTimer m_timer;
};

} // namespace

std::unique_ptr<Alarm> QtTimers::make(std::function<void()> fired) {
    return std::make_unique<QtAlarm>(std::move(fired));
}

} // namespace raincast
