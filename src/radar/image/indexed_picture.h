// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

namespace raincast {

/// A picture of 600 × 550 palette indices, a byte each, row by row.
using IndexedPicture = std::vector<std::uint8_t>;

} // namespace raincast
