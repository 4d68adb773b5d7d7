// SPDX-License-Identifier: MIT
#include "position/navigator/navigator_waiting.h"

#include <utility>

namespace raincast {

namespace {

NavigatorWaiting::Hook& hookInUse() {
    static auto* const hook = new NavigatorWaiting::Hook;
    return *hook;
}

} // namespace

void NavigatorWaiting::useHook(Hook hook) {
    hookInUse() = std::move(hook);
}

bool NavigatorWaiting::goesOn() {
    if (!hookInUse() || std::chrono::steady_clock::now() - m_last < kHookInterval) {
        return true;
    }
    const bool on = hookInUse()();
    m_last = std::chrono::steady_clock::now();
    return on;
}

} // namespace raincast
