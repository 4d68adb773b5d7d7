// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "palette/warning_kinds.h"

#include <QString>

#include <vector>

namespace raincast {

/// A warning of a region.
struct WeatherWarning {
    struct Corner {
        double latitude;  ///< degrees, north positive
        double longitude; ///< degrees, east positive
    };
    using Ring = std::vector<Corner>;  ///< in turn; the last one is joined to the first
    using Polygon = std::vector<Ring>; ///< its outline, then its holes

    WarningKind kind = WarningKind::severeThunderstorm;
    QString id;          ///< the same in all messages about it; empty: unknown
    QString office;      ///< who warns: "NWS Norman OK"
    QString headline;    ///< one sentence; may be empty
    QString text;        ///< may be empty
    QString instruction; ///< what to do; may be empty
    FileTime begin = 0;
    FileTime end = 0; ///< it holds before this time; 0: unknown
    std::vector<Polygon> polygons;
};

/// The warnings of a region at a time.
struct WeatherWarnings {
    std::vector<WeatherWarning> warnings;
    bool isSample = false; ///< made up: the picture says so
};

} // namespace raincast
