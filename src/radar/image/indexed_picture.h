// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

namespace raincast {

/// A picture of 600 × 550 bytes, row by row; what they mean is their palette's matter.
using IndexedPicture = std::vector<std::uint8_t>;

} // namespace raincast
