// SPDX-License-Identifier: MIT
#pragma once

#include "core/clock.h"

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

/// What the user must know of a clock that is wrong; empty for one that may be right.
[[nodiscard]] QString clockLine(Clock::Teller teller);

} // namespace raincast
