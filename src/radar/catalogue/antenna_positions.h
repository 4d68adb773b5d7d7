// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string_view>

namespace raincast {

/// Where a site's antenna stands, in degrees: the middle of its pictures.
struct AntennaPosition {
    std::string_view id; ///< three letters
    double latitude;
    double longitude;
};

inline constexpr std::size_t kAntennaCount = 155;

/// All sites of the tree in the order of their ids.
[[nodiscard]] const std::array<AntennaPosition, kAntennaCount>& antennaPositions();

/// The position of a site; null when the id is not known (letter case counts).
[[nodiscard]] const AntennaPosition* findAntenna(std::string_view id);

} // namespace raincast
