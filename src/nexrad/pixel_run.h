// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/image_geometry.h"

#include <array>
#include <cstddef>

namespace raincast {

/// Rows of pixels are placed run by run. The compiler knows the length, and does several pixels at
/// a time.
inline constexpr std::size_t kRunLength = 40;
static_assert(kFrameWidth % kRunLength == 0);

/// Something of each pixel of a run.
template<typename Value>
using PixelRun = std::array<Value, kRunLength>;

} // namespace raincast
