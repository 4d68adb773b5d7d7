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

CFeedQVAPI_to_GPSPosition::CFeedQVAPI_to_GPSPosition(
    PublishedPosition& position, NavigatorLink& link
)
    : Counter(kBeatsPerSecond), m_position(position), m_link(link) {}

CFeedQVAPI_to_GPSPosition::~CFeedQVAPI_to_GPSPosition() {
    if (m_linked) {
        DisconnectNavigator(m_link, false);
    }
}

void CFeedQVAPI_to_GPSPosition::onPublished(CDataGPSPosition& position) {
    if (m_publishing) {
        return; // it came from the navigator
    }
    m_ticksSinceOther = 0;
    // Nobody publishes while the program is busy. If it happens, do not hold it up.
    const bool tells = m_linked && !BusyGuard::active();
    if (tells && setNavigatorPosition(m_link, position) == kNavigatorGone) {
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
    m_linked = ConnectNavigator(m_link, false) == kNavigatorSuccess;
}

void CFeedQVAPI_to_GPSPosition::unlink() {
    DisconnectNavigator(m_link, false);
    m_linked = false;
}

void CFeedQVAPI_to_GPSPosition::poll() {
    if (const auto taken = getNavigatorPosition(m_link)) {
        take(*taken);
    } else if (taken.error() != kNavigatorNoPosition) {
        unlink();
    }
}

void CFeedQVAPI_to_GPSPosition::take(const NavigatorPosition& taken) {
    // Without two numbers there is no fix, and the last known place stays.
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

// Listeners know one position, the latest. Do not call another source's position lost.
void CFeedQVAPI_to_GPSPosition::lose() {
    m_position.fixType = kFixNone;
    if (m_ticksSinceOther <= m_ticksSincePublication) {
        m_position.drawAsLost();
    } else {
        publish();
    }
}

} // namespace raincast
