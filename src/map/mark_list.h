// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"

#include <QString>

#include <list>
#include <optional>
#include <vector>

namespace raincast {

class COverlayMark;

/// A mark as a list shows it.
struct MarkRow {
    const COverlayMark* mark = nullptr; ///< borrowed
    double distanceMetres = 0;
    double bearingDegrees = 0; ///< towards the mark, true, 0 to 360

    /// "3.2 Mi  045°", in the user's units; "not on earth" for a mark that is not placed.
    [[nodiscard]] QString wayText() const;
};

/// The marks from the nearest to the farthest, seen from a position, and then those that are not
/// placed. Without a position they stand in their own order, and their distances and bearings mean
/// nothing.
[[nodiscard]] std::vector<MarkRow>
listMarks(const std::list<COverlayMark>& marks, const std::optional<GeoPosition>& from);

} // namespace raincast
