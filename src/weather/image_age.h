// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <QString>

namespace raincast {

/// A sentence about a picture that is more than twenty minutes old: "Image is 43 minutes old", or
/// in hours, days or years. Empty for a younger picture and for one of the future.
[[nodiscard]] QString imageAgeText(FileTime taken, FileTime now);

} // namespace raincast
