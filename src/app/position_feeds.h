// SPDX-License-Identifier: MIT
#pragma once

#include "map/overlay_gps_position.h"
#include "position/feed_qvapi_to_gps_position.h"
#include "position/feed_rmc_to_gps_position.h"
#include "position/navigator/navigator_link.h"

namespace raincast {

/// Feeds the user's position from its sources to the maps for as long as the viewer runs.
class PositionFeeds {
public:
    /// The position of the receiver's sentences.
    [[nodiscard]] const COverlayGPSPosition& received() const { return m_received; }

private:
    COverlayGPSPosition m_received;
    COverlayGPSPosition m_navigated;
    NavigatorLink m_navigatorLink;
    CFeedRMC_to_GPSPosition m_receiverFeed{m_received};
    CFeedQVAPI_to_GPSPosition m_navigatorFeed{m_navigated, m_navigatorLink};
};

} // namespace raincast
