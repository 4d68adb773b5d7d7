// SPDX-License-Identifier: MIT
#pragma once

#include "maps/city_file.h"
#include "maps/map_line.h"
#include "maps/relief_file.h"
#include "maps/shore_file.h"

#include <QString>
#include <QStringList>

#include <mutex>
#include <optional>
#include <vector>

namespace raincast {

/// Where the map data lie; empty for a file that is missing.
struct MapDataFiles {
    QString shores;  ///< GSHHG polygons, binned netCDF
    QString rivers;  ///< GSHHG rivers, binned netCDF
    QString relief;  ///< ETOPO5, netCDF
    QString borders; ///< counties and states, TopoJSON
    QString cities;  ///< GeoNames places, protobuf
    QString roads;   ///< the operator's

    /// Finds the data of Debian's packages, and those that are packed into the program.
    [[nodiscard]] static MapDataFiles find(const QString& roads);

    /// One line for each missing file: the layer that will be empty, and how to get the data.
    [[nodiscard]] QStringList missing() const;

    /// A short text that changes whenever one of these files does.
    [[nodiscard]] QByteArray stamp() const;
};

/// The map data of a box, from those files; nothing from a missing or damaged one. Small files are
/// kept in memory from their first use on, large ones are read in part each time. Several threads
/// may ask at once.
class MapData {
public:
    explicit MapData(MapDataFiles files);

    [[nodiscard]] std::vector<ShoreBin> shores(const GeoBox& box) const;
    [[nodiscard]] std::vector<MapLine> rivers(const GeoBox& box) const;
    [[nodiscard]] ReliefGrid relief(const GeoBox& box) const;
    /// Borders of states (rank 0) and counties (rank 1).
    [[nodiscard]] std::vector<MapLine> borders(const GeoBox& box) const;
    [[nodiscard]] std::vector<MapLine> roads(const GeoBox& box) const;
    /// Whether the file of roads has any lines that can be read.
    [[nodiscard]] bool hasRoads() const;
    /// The largest first.
    [[nodiscard]] std::vector<City> cities(const GeoBox& box) const;

    [[nodiscard]] const MapDataFiles& files() const { return m_files; }

private:
    struct BoxedLine {
        GeoBox box;
        MapLine line;
    };
    using BoxedLines = std::vector<BoxedLine>;

    void readRoadsOnce() const;
    [[nodiscard]] static BoxedLines boxed(std::vector<MapLine> lines);
    [[nodiscard]] static std::vector<MapLine> linesIn(const BoxedLines& lines, const GeoBox& box);

    MapDataFiles m_files;
    mutable std::mutex m_mutex; ///< of everything below, and of the netCDF library
    mutable std::optional<ShoreFile> m_shores;
    mutable std::optional<RiverFile> m_rivers;
    mutable std::optional<BoxedLines> m_borders;
    mutable std::optional<BoxedLines> m_roads;
    mutable std::optional<std::vector<City>> m_cities;
};

} // namespace raincast
