// SPDX-License-Identifier: MIT
#pragma once

#include "server/rasteriser.h"

namespace raincast {

/// Writes "SAMPLE" small into a picture's lower left corner: letters of index `ink` with a rim of
/// index `rim` around them, which shows on any ground. The letters are this file's own, so that the
/// picture is the same whatever fonts a machine has.
void markAsSample(IndexedPicture& picture, std::uint8_t ink, std::uint8_t rim);

} // namespace raincast
