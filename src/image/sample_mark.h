// SPDX-License-Identifier: MIT
#pragma once

#include "image/indexed_picture.h"

namespace raincast {

/// Writes a small "SAMPLE" again and again into a picture, in staggered rows so close that even a
/// small window, or one with texts in its corners, shows one. The letters have index `ink` and a
/// rim of index `rim`, which shows on any ground. In a sharp picture the words cover the same of
/// it. They do not depend on the machine's fonts.
void markAsSample(IndexedPicture& picture, std::uint8_t ink, std::uint8_t rim);

} // namespace raincast
