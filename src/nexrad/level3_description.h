// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <array>
#include <cstdint>

namespace raincast {

class Level3Cursor;

/// The fields of the product description block that pictures need. Numbers are as they stand in the
/// file.
struct Level3Description {
    double latitude = 0;  ///< degrees
    double longitude = 0; ///< degrees
    int code = 0;         ///< of the product
    FileTime volumeTime = 0;
    double elevationDegrees = 0;                ///< the third product-dependent halfword / 10
    std::array<std::uint16_t, 16> thresholds{}; ///< halfwords 31 to 46
    std::uint32_t symbologyOffset = 0;          ///< halfwords from the message's begin; 0 for none
};

/// The bytes of the message header and of the two blocks together, up to the symbology.
inline constexpr std::size_t kLevel3HeadBytes = 120;

/// Reads the message header and the product description. The cursor knows whether it worked.
[[nodiscard]] Level3Description readLevel3Description(Level3Cursor& cursor);

} // namespace raincast
