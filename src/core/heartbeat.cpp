// SPDX-License-Identifier: MIT
#include "core/heartbeat.h"

#include "core/busy_guard.h"
#include "core/clock.h"

#include <algorithm>
#include <random>

namespace raincast {

namespace {

constexpr FileTime kJump = 20 * kFileTimePerSecond;
constexpr int kMaxPhase = 32767;

int randomPhase() {
    static std::minstd_rand generator{std::random_device{}()};
    return std::uniform_int_distribution<int>{0, kMaxPhase}(generator);
}

CHeartbeat::PhaseSource phaseSource = nullptr;

std::int32_t firstCountdown(std::int32_t period) {
    const int phase = phaseSource != nullptr ? phaseSource() : randomPhase();
    return (phase & kMaxPhase) % period + 1;
}

} // namespace

CHeartbeat& CHeartbeat::program() {
    static CHeartbeat heartbeat;
    return heartbeat;
}

void CHeartbeat::usePhaseSource(PhaseSource source) {
    phaseSource = source;
}

void CHeartbeat::Beat() {
    if (BusyGuard::active() || !Listener<CHeartbeat>::hasSource()) {
        return;
    }
    m_now = Clock::real().now();
    const bool jumped = m_previous != 0 && m_now - m_previous > kJump;
    m_previous = m_now;

    Listener<CHeartbeat>::forEach([jumped](Listener<CHeartbeat>& listener) {
        auto* counter = dynamic_cast<Counter*>(&listener);
        if (counter == nullptr) {
            return;
        }
        if (jumped) {
            counter->Resync();
        } else {
            counter->count();
        }
    });
}

CHeartbeat::Counter::Counter(std::int32_t period)
    : m_countdown(firstCountdown(std::max(period, 1))), m_period(std::max(period, 1)) {}

void CHeartbeat::Counter::onPublished(CHeartbeat&) {}

void CHeartbeat::Counter::count() {
    if (m_countdown != 1) {
        --m_countdown;
        return;
    }
    m_countdown = m_period;
    Tick();
}

} // namespace raincast
