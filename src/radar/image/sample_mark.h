// SPDX-License-Identifier: MIT
#pragma once

#include "radar/image/indexed_picture.h"

namespace raincast {

/// Writes "SAMPLE" small into a picture, in staggered rows so close that also a viewer with a small
/// window, or with texts of its own in a corner, shows one: letters of index `ink` with a rim of
/// index `rim` around them, which shows on any ground. The letters are this file's own, so that the
/// picture is the same whatever fonts a machine has.
void markAsSample(IndexedPicture& picture, std::uint8_t ink, std::uint8_t rim);

} // namespace raincast
