// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "geo/geo_position.h"
#include "geo/local_frame.h"

#include <optional>

namespace raincast {

/// The way of a storm that was seen twice: straight on, as fast as between the two.
class StormTrack {
public:
    struct Seen {
        GeoPosition place;
        FileTime time = 0;
    };

    /// The second time must be the later one, else the storm stands still.
    StormTrack(const Seen& first, const Seen& last);

    [[nodiscard]] const Seen& last() const { return m_last; }
    [[nodiscard]] double knots() const;
    /// Where it goes, degrees true, 0 to 360; 0 for a storm that stands still.
    [[nodiscard]] double bearing() const;
    /// Whether it is too slow for its direction to be more than chance.
    [[nodiscard]] bool standsStill() const;

    [[nodiscard]] GeoPosition placeAt(FileTime time) const;

    /// Where and when it comes nearest to a place.
    struct Passing {
        FileTime time = 0;
        double metres = 0;    ///< between the two then
        double bearing = 0;   ///< of the storm as seen from the place then
        bool reaches = false; ///< it comes over the place, as far as a touched way can tell
    };
    /// None for a storm that stands still or has passed.
    [[nodiscard]] std::optional<Passing> passing(GeoPosition place) const;

private:
    Seen m_last;
    LocalOffset m_motion; ///< metres a second
};

} // namespace raincast
