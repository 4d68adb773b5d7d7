// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/image_geometry.h"

#include <string>
#include <vector>

namespace raincast {

/// An outline on the warnings picture.
struct WarningPolygon {
    enum class Kind {
        severeThunderstorm, ///< yellow
        tornado,            ///< red, drawn over the others
    };
    struct Corner {
        double latitude;
        double longitude;
    };

    Kind kind = Kind::severeThunderstorm;
    std::vector<Corner> corners; ///< in turn; the last one is joined to the first
};

/// The picture of warnings: outlines on transparent white, the bytes of a GIF of 600 × 550 pixels.
/// `sample` has it say that they are made up.
[[nodiscard]] std::string renderWarnings(
    const ImageGeometry& image, const std::vector<WarningPolygon>& warnings, bool sample
);

} // namespace raincast
