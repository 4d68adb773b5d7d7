// SPDX-License-Identifier: MIT
#pragma once

#include "geo/view_transform.h"

#include <array>
#include <cstdint>

namespace raincast {

/// Zoom and origin's column and row as a page file has them: three numbers of 32 bits,
/// little-endian.
using ViewBytes = std::array<std::uint8_t, 12>;

[[nodiscard]] ViewBytes viewToBytes(const ViewTransform& view);
/// A zoom out of range becomes 0.
[[nodiscard]] ViewTransform viewFromBytes(const ViewBytes& bytes);

} // namespace raincast
