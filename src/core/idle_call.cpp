// SPDX-License-Identifier: MIT
#include "core/idle_call.h"

#include "core/busy_guard.h"

#include <utility>

namespace raincast {

namespace {

constexpr std::chrono::milliseconds kLookAgain{100};

} // namespace

IdleCall::IdleCall(Timers& timers, std::function<void()> function)
    : m_function(std::move(function)), m_again(timers.make([this] { call(); })) {}

void IdleCall::call() {
    if (BusyGuard::active()) {
        m_again->start(kLookAgain);
        return;
    }
    m_again->stop();
    m_function();
}

} // namespace raincast
