// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"

#include <QString>

namespace raincast {

/// A named point that the user keeps.
struct MarkData {
    double latitude = 0;  ///< degrees, north positive
    double longitude = 0; ///< degrees, east positive
    QString name;

    [[nodiscard]] GeoPosition position() const { return {latitude, longitude}; }
};

} // namespace raincast
