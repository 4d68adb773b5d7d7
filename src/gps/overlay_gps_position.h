// SPDX-License-Identifier: MIT
#pragma once

#include "gps/data_gps_position.h"

namespace raincast {

/// The user's position as each feed owns one, and the way it is made known.
class COverlayGPSPosition : public CDataGPSPosition {
public:
    /// Makes the present values known to every Listener<CDataGPSPosition>. Feeds call it after
    /// setting the values.
    void publish();
};

} // namespace raincast
