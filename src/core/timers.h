// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace raincast {

/// Calls its function once, some time after it was started. Ending it stops it.
class Alarm {
public:
    virtual ~Alarm() = default;

    /// Starts or restarts it. 0 means as soon as other events had their turn.
    virtual void start(std::chrono::milliseconds delay) = 0;
    virtual void stop() = 0;
};

/// Where alarms come from: the event loop, or a test that fires them by hand.
class Timers {
public:
    virtual ~Timers() = default;
    [[nodiscard]] virtual std::unique_ptr<Alarm> make(std::function<void()> fired) = 0;
};

/// Alarms of Qt's event loop, on the thread that makes them.
class QtTimers : public Timers {
public:
    [[nodiscard]] std::unique_ptr<Alarm> make(std::function<void()> fired) override;
};

} // namespace raincast
