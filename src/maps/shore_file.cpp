// SPDX-License-Identifier: MIT
#include "maps/shore_file.h"

#include "maps/netcdf_file.h"

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

// Points are offsets from their bin's south-west corner in this part of the bin's size.
constexpr double kOffsetUnits = 65535;

/// The binned files' common shape: bins hold segments, segments hold points.
class BinnedFile {
public:
    BinnedFile(const QString& path, const char* segmentInfo) : m_file(path) {
        if (!m_file.isOpen()) {
            return;
        }
        m_firstSegment = m_file.ints("Id_of_first_segment_in_a_bin");
        m_segments = m_file.ints("N_segments_in_a_bin");
        m_firstPoint = m_file.ints("Id_of_first_point_in_a_segment");
        m_info = m_file.ints(segmentInfo);
        const auto minutes = m_file.ints("Bin_size_in_minutes");
        const auto columns = m_file.ints("N_bins_in_360_longitude_range");
        if (!minutes.empty() && !columns.empty() && minutes[0] > 0 && columns[0] > 0) {
            m_binDegrees = minutes[0] / 60.0;
            m_columns = columns[0];
        }
    }

    [[nodiscard]] const NetcdfFile& file() const { return m_file; }

    /// The bins that overlap a box; nothing from a damaged file.
    [[nodiscard]] std::vector<std::size_t> binsIn(const GeoBox& box) const {
        std::vector<std::size_t> found;
        if (m_segments.size() != m_firstSegment.size() || m_columns == 0) {
            return found;
        }
        for (std::size_t bin = 0; bin < m_firstSegment.size(); ++bin) {
            if (boxOf(bin).overlaps(box)) {
                found.push_back(bin);
            }
        }
        return found;
    }

    /// Bins are numbered from the north-west, the first at longitude 0.
    [[nodiscard]] GeoBox boxOf(std::size_t bin) const {
        const auto columns = static_cast<std::size_t>(m_columns);
        const std::size_t row = bin / columns;
        const double north = 90 - static_cast<double>(row) * m_binDegrees;
        const double east = static_cast<double>(bin % columns) * m_binDegrees;
        const double west = east >= 180 ? east - 360 : east;
        return {north - m_binDegrees, west, north, west + m_binDegrees};
    }

    /// Calls use(info, first point, its box) for every segment of a bin.
    template<typename Use>
    void forEachSegment(std::size_t bin, Use use) const {
        const auto first = static_cast<std::size_t>(std::max(0, m_firstSegment[bin]));
        const auto count = static_cast<std::size_t>(std::max(0, m_segments[bin]));
        const std::size_t known = std::min(m_info.size(), m_firstPoint.size());
        for (std::size_t i = first; i < std::min(first + count, known); ++i) {
            use(i, m_info[i]);
        }
    }

    [[nodiscard]] std::vector<GeoPosition>
    points(std::size_t segment, std::size_t count, const GeoBox& box) const {
        const auto first = static_cast<std::size_t>(std::max(0, m_firstPoint[segment]));
        const auto east = m_file.ints("Relative_longitude_from_SW_corner_of_bin", first, count);
        const auto north = m_file.ints("Relative_latitude_from_SW_corner_of_bin", first, count);
        std::vector<GeoPosition> result;
        for (std::size_t i = 0; i < std::min(east.size(), north.size()); ++i) {
            // Stored as unsigned 16-bit numbers in a signed type.
            result.push_back(
                {box.south + (north[i] & 0xFFFF) / kOffsetUnits * m_binDegrees,
                 box.west + (east[i] & 0xFFFF) / kOffsetUnits * m_binDegrees}
            );
        }
        return result;
    }

private:
    NetcdfFile m_file;
    std::vector<int> m_firstSegment;
    std::vector<int> m_segments;
    std::vector<int> m_firstPoint;
    std::vector<int> m_info;
    double m_binDegrees = 1;
    int m_columns = 0;
};

/// How far along the bin's border a point lies, counter-clockwise from the south-west corner: 0 to
/// 4, one for each side. The point is taken to lie on the side that it is nearest to.
double alongBorder(const GeoBox& box, GeoPosition point) {
    const double x = (point.longitude - box.west) / (box.east - box.west);
    const double y = (point.latitude - box.south) / (box.north - box.south);
    const double distances[] = {y, 1 - x, 1 - y, x};
    const double positions[] = {x, 1 + y, 3 - x, 4 - y};
    const auto nearest = std::min_element(std::begin(distances), std::end(distances));
    return positions[nearest - std::begin(distances)];
}

GeoPosition cornerOf(const GeoBox& box, int number) {
    const GeoPosition corners[] = {
        {box.south, box.west}, {box.south, box.east}, {box.north, box.east}, {box.north, box.west}};
    return corners[number];
}

/// Adds the corners that lie between the ring's last point and its first, going along the border
/// on the way that does not pass the south-west corner.
void closeAlongBorder(const GeoBox& box, std::vector<GeoPosition>& ring) {
    const double from = alongBorder(box, ring.back());
    const double to = alongBorder(box, ring.front());
    for (int corner = 1; corner <= 3; ++corner) {
        const int next = from < to ? corner : 4 - corner;
        if (std::min(from, to) < next && next < std::max(from, to)) {
            ring.push_back(cornerOf(box, next));
        }
    }
}

} // namespace

std::vector<ShoreBin> readShores(const QString& file, const GeoBox& box) {
    const BinnedFile shores(file, "Embedded_npts_levels_exit_entry_for_a_segment");
    const auto corners = shores.file().isOpen()
                             ? shores.file().ints("Embedded_node_levels_in_a_bin")
                             : std::vector<int>();
    std::vector<ShoreBin> bins;
    for (const std::size_t number : shores.binsIn(box)) {
        // Three bits for each corner, the south-west one highest. Levels are odd on land.
        const int southWest = number < corners.size() ? corners[number] >> 9 : 0;
        ShoreBin bin{shores.boxOf(number), (southWest & 1) != 0, {}};
        shores.forEachSegment(number, [&](std::size_t segment, int info) {
            // Number of points, level, and the sides of entry and exit; side 4 means none.
            const auto count = static_cast<std::size_t>(static_cast<unsigned>(info) >> 9U);
            ShorePiece piece{(info >> 6) & 7, (info & 7) == 4, {}};
            piece.points = shores.points(segment, count, bin.box);
            if (piece.points.size() > 1) {
                bin.pieces.push_back(std::move(piece));
            }
        });
        bins.push_back(std::move(bin));
    }
    return bins;
}

std::vector<MapLine> readRivers(const QString& file, const GeoBox& box) {
    const BinnedFile rivers(file, "Hierarchial_level_of_a_segment");
    const auto counts =
        rivers.file().isOpen() ? rivers.file().ints("N_points_for_a_segment") : std::vector<int>();
    std::vector<MapLine> lines;
    for (const std::size_t bin : rivers.binsIn(box)) {
        const GeoBox binBox = rivers.boxOf(bin);
        rivers.forEachSegment(bin, [&](std::size_t segment, int level) {
            const int count = segment < counts.size() ? counts[segment] & 0xFFFF : 0;
            auto points = rivers.points(segment, static_cast<std::size_t>(count), binBox);
            if (points.size() > 1) {
                lines.push_back({level, std::move(points)});
            }
        });
    }
    return lines;
}

std::vector<std::vector<GeoPosition>> landRings(const ShoreBin& bin) {
    std::vector<std::vector<GeoPosition>> rings;
    if (bin.landAtSouthWest) {
        rings.push_back(
            {cornerOf(bin.box, 0), cornerOf(bin.box, 1), cornerOf(bin.box, 2), cornerOf(bin.box, 3)}
        );
    }
    for (const ShorePiece& piece : bin.pieces) {
        rings.push_back(piece.points);
        if (!piece.closed) {
            closeAlongBorder(bin.box, rings.back());
        }
    }
    return rings;
}

} // namespace raincast
