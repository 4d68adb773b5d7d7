// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <list>

namespace raincast {

class COverlayMark;

/// A mark's name as one line of a list or a map: at most 100 characters, without control
/// characters; "Unnamed" for an empty one.
[[nodiscard]] QString shownMarkName(const QString& name);

/// A name for a mark that the user is about to add: "Mark N", with the number after the highest
/// that a name of that form has.
[[nodiscard]] QString proposedMarkName(const std::list<COverlayMark>& marks);

/// A bearing for people, as three digits: "045°".
[[nodiscard]] QString bearingText(double degrees);

} // namespace raincast
