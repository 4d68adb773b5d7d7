// SPDX-License-Identifier: MIT
#pragma once

#include "maps/map_line.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace raincast {

/// The lines of a TopoJSON topology: each arc once. Rank 0 for the arcs that the object named
/// `major` uses (states, say), rank 1 for all others (counties). Empty for bytes that are
/// not a topology; bad arcs are left out.
///
/// Format: The TopoJSON Format Specification, https://github.com/topojson/topojson-specification
[[nodiscard]] std::vector<MapLine> readTopology(const QByteArray& bytes, const QString& major);

/// What the whole numbers of a topology's arcs stand for.
struct TopologyTransform {
    GeoPosition step;  ///< degrees
    GeoPosition begin; ///< where all arcs begin to count
};

/// Nothing where a topology has none, and its arcs are positions.
[[nodiscard]] std::optional<TopologyTransform> transformOf(const QByteArray& bytes);

} // namespace raincast
