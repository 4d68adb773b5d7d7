// SPDX-License-Identifier: MIT
#include "gps/overlay_gps_position.h"

#include "gps/listener.h"

namespace raincast {

void COverlayGPSPosition::publish() {
    Listener<CDataGPSPosition>::Notify(*this);
}

} // namespace raincast
