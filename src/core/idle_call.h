// SPDX-License-Identifier: MIT
#pragma once

#include "core/timers.h"

#include <functional>
#include <memory>

namespace raincast {

/// Calls a function at once or, while the program is busy (BusyGuard), as soon as it is not any
/// more: events that come during a wait are neither handled in the midst of it nor lost.
class IdleCall {
public:
    /// The timers are borrowed.
    IdleCall(Timers& timers, std::function<void()> function);

    /// Several calls while busy become one.
    void call();

    /// Forgets a call that still waits.
    void cancel() { m_again->stop(); }

private:
    std::function<void()> m_function;
    std::unique_ptr<Alarm> m_again;
};

} // namespace raincast
