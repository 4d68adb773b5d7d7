// SPDX-License-Identifier: MIT
#include "maps/map_data.h"

#include "core/whole_file.h"
#include "maps/border_file.h"
#include "maps/road_file.h"
#include "maps/topojson.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QFileInfo>
#include <QResource>

#include <algorithm>

namespace raincast {

namespace {

constexpr qint64 kMostBytes = 64LL * 1024 * 1024;

QString firstThatExists(const QStringList& paths) {
    const auto found = std::find_if(paths.begin(), paths.end(), [](const QString& path) {
        return QFileInfo(path).isFile();
    });
    return found == paths.end() ? QString() : *found;
}

/// The GSHHG file of a kind in the best resolution that is installed.
QString shoreFile(const QString& kind) {
    QStringList paths;
    for (const QChar resolution : QStringLiteral("fhilc")) {
        paths += QStringLiteral("/usr/share/gmt-gshhg/binned_%1_%2.nc").arg(kind, resolution);
    }
    return firstThatExists(paths);
}

QByteArray contentsOf(const QString& path) {
    const QResource packed(path);
    return packed.isValid() ? packed.uncompressedData()
                            : readWhole(path, kMostBytes).value_or(QByteArray());
}

} // namespace

MapDataFiles MapDataFiles::find(const QString& roads) {
    MapDataFiles files;
    files.shores = shoreFile(QStringLiteral("GSHHS"));
    files.rivers = shoreFile(QStringLiteral("river"));
    files.relief = firstThatExists({QStringLiteral("/usr/share/ferret-vis/data/etopo5.cdf")});
    files.borders = QStringLiteral(":/map-data/borders.packed");
    files.cities = QStringLiteral(":/map-data/cities.pbf");
    files.roads = roads;
    return files;
}

QStringList MapDataFiles::missing() const {
    const struct {
        const QString& file;
        const char* text;
    } rows[] = {
        {shores, "No shores on the topo layer: install Debian's gmt-gshhg-full."},
        {rivers, "The rivers layer is empty: install Debian's gmt-gshhg-full."},
        {relief, "No relief on the topo layer: install Debian's ferret-datasets."},
        {roads, "The highways layer is empty: no package has highways; give --roads FILE."},
    };
    QStringList lines;
    for (const auto& row : rows) {
        if (row.file.isEmpty()) {
            lines += QString::fromLatin1(row.text);
        }
    }
    return lines;
}

QByteArray MapDataFiles::stamp() const {
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (const QString& path : {shores, rivers, relief, borders, cities, roads}) {
        const QFileInfo file(path);
        hash.addData(path.toUtf8());
        hash.addData(QByteArray::number(file.isFile() ? file.size() : -1));
        hash.addData(QByteArray::number(file.lastModified().toMSecsSinceEpoch()));
    }
    return hash.result().toHex().left(12);
}

MapData::MapData(MapDataFiles files) : m_files(std::move(files)) {}

std::vector<ShoreBin> MapData::shores(const GeoBox& box) const {
    const std::lock_guard lock(m_mutex);
    if (m_files.shores.isEmpty()) {
        return {};
    }
    if (!m_shores) {
        m_shores.emplace(m_files.shores);
    }
    return m_shores->in(box);
}

std::vector<MapLine> MapData::rivers(const GeoBox& box) const {
    const std::lock_guard lock(m_mutex);
    if (m_files.rivers.isEmpty()) {
        return {};
    }
    if (!m_rivers) {
        m_rivers.emplace(m_files.rivers);
    }
    return m_rivers->in(box);
}

ReliefGrid MapData::relief(const GeoBox& box) const {
    const std::lock_guard lock(m_mutex);
    return m_files.relief.isEmpty() ? ReliefGrid() : readRelief(m_files.relief, box);
}

std::vector<MapLine> MapData::borders(const GeoBox& box) const {
    const std::lock_guard lock(m_mutex);
    if (!m_borders) {
        const QByteArray bytes = contentsOf(m_files.borders);
        const bool isTopology = m_files.borders.endsWith(QStringLiteral(".json"));
        m_borders =
            boxed(isTopology ? readTopology(bytes, QStringLiteral("states")) : readBorders(bytes));
    }
    return linesIn(*m_borders, box);
}

std::vector<MapLine> MapData::roads(const GeoBox& box) const {
    const std::lock_guard lock(m_mutex);
    readRoadsOnce();
    return linesIn(*m_roads, box);
}

bool MapData::hasRoads() const {
    const std::lock_guard lock(m_mutex);
    readRoadsOnce();
    return !m_roads->empty();
}

void MapData::readRoadsOnce() const {
    if (!m_roads) {
        m_roads =
            boxed(m_files.roads.isEmpty() ? std::vector<MapLine>() : readRoads(m_files.roads));
    }
}

std::vector<City> MapData::cities(const GeoBox& box) const {
    const std::lock_guard lock(m_mutex);
    if (!m_cities) {
        m_cities = readCities(contentsOf(m_files.cities));
        std::stable_sort(m_cities->begin(), m_cities->end(), [](const City& a, const City& b) {
            return a.population > b.population;
        });
    }
    std::vector<City> found;
    std::copy_if(
        m_cities->begin(), m_cities->end(), std::back_inserter(found),
        [&box](const City& city) { return box.contains(city.position); }
    );
    return found;
}

MapData::BoxedLines MapData::boxed(std::vector<MapLine> lines) {
    BoxedLines result;
    result.reserve(lines.size());
    for (MapLine& line : lines) {
        const GeoBox box = boxAround(line.points);
        result.push_back({box, std::move(line)});
    }
    return result;
}

std::vector<MapLine> MapData::linesIn(const BoxedLines& lines, const GeoBox& box) {
    std::vector<MapLine> found;
    for (const BoxedLine& candidate : lines) {
        if (candidate.box.overlaps(box)) {
            found.push_back(candidate.line);
        }
    }
    return found;
}

} // namespace raincast
