// SPDX-License-Identifier: MIT
#include "position/feed_qvapi_to_gps_position.h"

#include "core/busy_guard.h"
#include "position/navigator/navigator_link.h"

#include <cmath>

namespace raincast {

namespace {

constexpr std::int32_t kBeatsPerSecond = 10;
constexpr std::uint32_t kTicksBetweenAttempts = 10;
constexpr std::uint32_t kQuietTicks = 11;
constexpr std::uint32_t kSilentTicks = kSecondsToLoss;

} // namespace

CFeedQVAPI_to_GPSPosition::CFeedQVAPI_to_GPSPosition(PublishedPosition& position)
    : Counter(kBeatsPerSecond), m_position(position) {}

CFeedQVAPI_to_GPSPosition::~CFeedQVAPI_to_GPSPosition() {
    if (m_linked) {
        DisconnectNavigator(false);
    }
}

void CFeedQVAPI_to_GPSPosition::onPublished(CDataGPSPosition& position) {
    if (m_publishing) {
        return; // it came from the navigator
    }
    m_ticksSinceOther = 0;
    // Nobody publishes while the program is busy; should somebody, he is not held up.
    if (m_linked && !BusyGuard::active() && setNavigatorPosition(position) == kNavigatorGone) {
        unlink();
    }
}

void CFeedQVAPI_to_GPSPosition::Tick() {
    ++m_ticksSinceOther;
    ++m_ticksSincePublication;
    if (!m_linked) {
        tryToLink();
    }
    if (m_linked && m_ticksSinceOther >= kQuietTicks) {
        poll();
    }
    if (m_position.published().valid() && m_ticksSincePublication >= kSilentTicks) {
        lose();
    }
}

void CFeedQVAPI_to_GPSPosition::tryToLink() {
    if (m_ticksToAttempt < kTicksBetweenAttempts) {
        ++m_ticksToAttempt;
        return;
    }
    m_ticksToAttempt = 0;
    m_linked = ConnectNavigator(false) == kNavigatorSuccess;
}

void CFeedQVAPI_to_GPSPosition::unlink() {
    DisconnectNavigator(false);
    m_linked = false;
    m_ticksToAttempt = 0;
}

void CFeedQVAPI_to_GPSPosition::poll() {
    NavigatorPosition taken;
    const NavigatorStatus status = getNavigatorPosition(taken);
    if (status == kNavigatorSuccess) {
        take(taken);
    } else if (status != kNavigatorNoPosition) {
        unlink();
    }
}

void CFeedQVAPI_to_GPSPosition::take(const NavigatorPosition& taken) {
    // What is no number is no place, and no fix; the last place known stays.
    const bool placed = std::isfinite(taken.latitude) && std::isfinite(taken.longitude);
    if (placed) {
        m_position.latitude = taken.latitude;
        m_position.longitude = taken.longitude;
    }
    m_position.speed = taken.speed;
    m_position.course = taken.course;
    m_position.time = fromUnixSeconds(taken.unixSeconds);
    m_position.fixType = placed && taken.valid ? kFixGps : kFixNone;
    publish();
}

void CFeedQVAPI_to_GPSPosition::publish() {
    m_publishing = true;
    m_position.publish();
    m_publishing = false;
    m_ticksSincePublication = 0;
}

// Listeners know of one position, the latest: another source's is not to be called lost.
void CFeedQVAPI_to_GPSPosition::lose() {
    m_position.fixType = kFixNone;
    if (m_ticksSinceOther <= m_ticksSincePublication) {
        m_position.drawAsLost();
    } else {
        publish();
    }
}

} // namespace raincast
