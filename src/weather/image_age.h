// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <QString>

namespace raincast {

/// The age of a picture, for the user.
struct ImageAge {
    /// "Image is 43 minutes old", or in hours, days or years. Empty for a picture of at most twenty
    /// minutes and for one of the future.
    QString text = {};
    bool overAnHour = false;
};

[[nodiscard]] ImageAge imageAge(FileTime taken, FileTime now);

} // namespace raincast
