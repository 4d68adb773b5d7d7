// SPDX-License-Identifier: MIT
#include "position/feed_rmc_to_gps_position.h"

#include "core/clock.h"

namespace raincast {

namespace {

constexpr std::int32_t kBeatsPerSecond = 10;
constexpr std::uint32_t kSilentTicks = kSecondsToLoss;

} // namespace

CFeedRMC_to_GPSPosition::CFeedRMC_to_GPSPosition(PublishedPosition& position)
    : Counter(kBeatsPerSecond), m_position(position) {}

void CFeedRMC_to_GPSPosition::onPublished(CNMEA_GPS::RMC& rmc) {
    m_position.latitude = rmc.latitude;
    m_position.longitude = rmc.longitude;
    m_position.time = rmc.time;
    m_position.speed = rmc.speed;
    m_position.course = rmc.course;
    if (!rmc.valid) {
        m_position.fixType = kFixNone;
    } else if (!m_position.valid()) {
        m_position.fixType = kFixGps; // a better one, from GGA, is kept
    }
    if (rmc.valid) {
        SystemClock::ofProcess().hear(rmc.time);
    }
    publish();
    m_rmcSeen = true;
}

void CFeedRMC_to_GPSPosition::onPublished(CNMEA_GPS::GGA& gga) {
    m_position.altitude = gga.altitude;
    m_position.dilution = gga.dilution;
    m_position.satellites = gga.satellites;
    m_position.setFixTypeFromQuality(gga.quality);
    if (!m_rmcSeen) {
        m_position.latitude = gga.latitude;
        m_position.longitude = gga.longitude;
        m_position.time = Listener<CNMEA_GPS::GGA>::notificationTime();
        publish();
    }
    m_ggaSeen = true;
}

void CFeedRMC_to_GPSPosition::onPublished(CNMEA_GPS::VTG& vtg) {
    if (!m_rmcSeen) {
        m_position.course = vtg.course;
        m_position.speed = vtg.speed;
    }
}

void CFeedRMC_to_GPSPosition::onPublished(ReceiverChange& /*change*/) {
    if (m_position.published().valid()) {
        lose();
    }
    static_cast<CDataGPSPosition&>(m_position) = {};
    m_rmcSeen = false;
    m_ggaSeen = false;
}

void CFeedRMC_to_GPSPosition::Tick() {
    ++m_ticksSincePublication;
    // GGA may have said otherwise since: the maps go by what was published.
    const bool hasFix = m_position.valid() || m_position.published().valid();
    if (hasFix && m_ticksSincePublication == kSilentTicks) {
        lose();
    }
}

// The count runs on: a loss is announced once.
void CFeedRMC_to_GPSPosition::lose() {
    m_position.fixType = kFixNone;
    m_position.publish();
}

void CFeedRMC_to_GPSPosition::publish() {
    m_position.publish();
    m_ticksSincePublication = 0;
}

} // namespace raincast
