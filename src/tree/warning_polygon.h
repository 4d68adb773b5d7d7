// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

namespace raincast {

/// An outline on the warnings picture.
struct WarningPolygon {
    enum class Kind {
        severeThunderstorm, ///< yellow
        tornado,            ///< red, drawn over the others
    };
    struct Corner {
        double latitude;  ///< degrees, north positive
        double longitude; ///< degrees, east positive
    };

    Kind kind = Kind::severeThunderstorm;
    std::vector<Corner> corners; ///< in turn; the last one is joined to the first
};

} // namespace raincast
