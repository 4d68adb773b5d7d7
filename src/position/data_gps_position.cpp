// SPDX-License-Identifier: MIT
#include "position/data_gps_position.h"

#include <array>

namespace raincast {

void CDataGPSPosition::setFixTypeFromQuality(std::int32_t quality) {
    static constexpr std::array<std::int32_t, 9> fixTypes{
        kFixNone,              // 0: no fix
        kFixGps,               // 1
        kFixDifferential,      // 2
        kFixPrecise,           // 3: the precise positioning service
        kFixRealTimeKinematic, // 4: with whole-number ambiguities
        kFixRealTimeKinematic, // 5: with floating ambiguities
        kFixEstimated,         // 6: dead reckoning
        kFixManual,            // 7
        kFixSimulated,         // 8
    };
    if (quality >= 0 && static_cast<std::size_t>(quality) < fixTypes.size()) {
        fixType = fixTypes[static_cast<std::size_t>(quality)];
    }
}

} // namespace raincast
