// SPDX-License-Identifier: MIT
#pragma once

#include "net/file_kind.h"

namespace raincast {

// What a radar image server publishes.
extern const FileKind kGifFile;
extern const FileKind kJpegFile;
/// A picture that is to take the place of one: no part of it would do.
extern const FileKind kSoundGifFile;
/// As readWarningTexts() reads them.
extern const FileKind kWarningTextsFile;
/// Its numbers place all of a site's pictures on the earth: cut in the middle of one, it would
/// place them wrongly.
extern const FileKind kWorldFile;

} // namespace raincast
