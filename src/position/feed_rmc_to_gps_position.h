// SPDX-License-Identifier: MIT
#pragma once

#include "core/heartbeat.h"
#include "core/listener.h"
#include "position/nmea/nmea_gga.h"
#include "position/nmea/nmea_rmc.h"
#include "position/nmea/nmea_vtg.h"
#include "position/published_position.h"
#include "position/receiver_change.h"

#include <cstdint>

namespace raincast {

/// Makes positions of a receiver's sentences. RMC leads: each one is a position. GGA adds altitude,
/// dilution, satellites and the kind of fix; GGA and VTG give place and motion only as long as the
/// source has sent no RMC. A receiver that falls silent is announced once, nine seconds after its
/// last position, as a position without a fix. A change of source is announced at once, and starts
/// again.
class CFeedRMC_to_GPSPosition : private Listener<CNMEA_GPS::RMC>,
                                private Listener<CNMEA_GPS::GGA>,
                                private Listener<CNMEA_GPS::VTG>,
                                private Listener<ReceiverChange>,
                                private CHeartbeat::Counter {
public:
    /// The position that it publishes through is borrowed.
    explicit CFeedRMC_to_GPSPosition(PublishedPosition& position);

    /// What the feed publishes.
    [[nodiscard]] const PublishedPosition& position() const { return m_position; }

    /// Whether such a sentence has come from this source.
    [[nodiscard]] bool rmcSeen() const { return m_rmcSeen; }
    [[nodiscard]] bool ggaSeen() const { return m_ggaSeen; }

private:
    using CHeartbeat::Counter::onPublished;
    void onPublished(CNMEA_GPS::RMC& rmc) override;
    void onPublished(CNMEA_GPS::GGA& gga) override;
    void onPublished(CNMEA_GPS::VTG& vtg) override;
    void onPublished(ReceiverChange& change) override;
    void Tick() override;
    void publish();
    void lose();

    PublishedPosition& m_position;
    std::uint32_t m_ticksSincePublication = 0;
    bool m_rmcSeen = false;
    bool m_ggaSeen = false;
};

} // namespace raincast
