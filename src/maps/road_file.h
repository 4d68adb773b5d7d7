// SPDX-License-Identifier: MIT
#pragma once

#include "maps/map_line.h"

#include <QString>

#include <vector>

namespace raincast {

/// The lines of a file of roads in degrees (WGS 84): a shapefile (FILE.shp with its FILE.shx beside
/// it) or GeoJSON (any other name). Only lines are read; all ranks are 0.
/// Empty when the file cannot be read.
[[nodiscard]] std::vector<MapLine> readRoads(const QString& file);

/// The lines of a GeoJSON text: LineString and MultiLineString, alone, in features or collections.
[[nodiscard]] std::vector<MapLine> readGeoJsonLines(const QByteArray& bytes);

} // namespace raincast
