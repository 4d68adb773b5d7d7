// SPDX-License-Identifier: MIT
#include "maps/shore_file.h"

#include "maps/netcdf_file.h"

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

// Points are offsets from their bin's south-west corner in this part of the bin's size.
constexpr double kOffsetUnits = 65535;
constexpr std::size_t kReadAhead = 8192; // points

} // namespace

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

    /// A table of one of the two files; empty where there is none.
    [[nodiscard]] std::vector<int> ints(const char* table) const {
        return m_file.isOpen() ? m_file.ints(table) : std::vector<int>();
    }

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

    /// Of a segment in a bin with that box; none of a damaged file's.
    [[nodiscard]] std::vector<GeoPosition>
    points(std::size_t segment, std::size_t count, const GeoBox& box) const {
        const auto first = static_cast<std::size_t>(std::max(0, m_firstPoint[segment]));
        if (!m_window.has(first, count)) {
            m_window = read(first, std::max(count, kReadAhead));
        }
        if (!m_window.has(first, count)) {
            m_window = read(first, count); // the file's last ones
        }
        std::vector<GeoPosition> result;
        if (m_window.has(first, count)) {
            result.reserve(count);
            for (std::size_t i = first - m_window.first; result.size() < count; ++i) {
                // Stored as unsigned 16-bit numbers in a signed type.
                result.push_back(
                    {box.south + (m_window.north[i] & 0xFFFF) / kOffsetUnits * m_binDegrees,
                     box.west + (m_window.east[i] & 0xFFFF) / kOffsetUnits * m_binDegrees}
                );
            }
        }
        return result;
    }

private:
    /// Points that follow each other in the file. The library takes long for each piece that it
    /// reads, and the segments of a bin stand side by side.
    struct Window {
        std::size_t first = 0;
        std::vector<int> east{};
        std::vector<int> north{};

        [[nodiscard]] bool has(std::size_t point, std::size_t count) const {
            const std::size_t end = first + std::min(east.size(), north.size());
            return point >= first && point + count <= end;
        }
    };

    [[nodiscard]] Window read(std::size_t first, std::size_t count) const {
        return {
            first, m_file.ints("Relative_longitude_from_SW_corner_of_bin", first, count),
            m_file.ints("Relative_latitude_from_SW_corner_of_bin", first, count)};
    }

    NetcdfFile m_file;
    std::vector<int> m_firstSegment;
    std::vector<int> m_segments;
    std::vector<int> m_firstPoint;
    std::vector<int> m_info;
    double m_binDegrees = 1;
    int m_columns = 0;
    mutable Window m_window;
};

namespace {

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

ShoreFile::ShoreFile(const QString& path)
    : m_file(std::make_unique<BinnedFile>(path, "Embedded_npts_levels_exit_entry_for_a_segment")),
      m_corners(m_file->ints("Embedded_node_levels_in_a_bin")) {}

ShoreFile::~ShoreFile() = default;

std::vector<ShoreBin> ShoreFile::in(const GeoBox& box) const {
    std::vector<ShoreBin> bins;
    for (const std::size_t number : m_file->binsIn(box)) {
        // Three bits for each corner, the south-west one highest. Levels are odd on land.
        const int southWest = number < m_corners.size() ? m_corners[number] >> 9 : 0;
        ShoreBin bin{m_file->boxOf(number), (southWest & 1) != 0, {}};
        m_file->forEachSegment(number, [&](std::size_t segment, int info) {
            // Number of points, level, and the sides of entry and exit; side 4 means none.
            const auto count = static_cast<std::size_t>(static_cast<unsigned>(info) >> 9U);
            ShorePiece piece{(info >> 6) & 7, (info & 7) == 4, {}};
            piece.points = m_file->points(segment, count, bin.box);
            if (piece.points.size() > 1) {
                bin.pieces.push_back(std::move(piece));
            }
        });
        bins.push_back(std::move(bin));
    }
    return bins;
}

RiverFile::RiverFile(const QString& path)
    : m_file(std::make_unique<BinnedFile>(path, "Hierarchial_level_of_a_segment")),
      m_counts(m_file->ints("N_points_for_a_segment")) {}

RiverFile::~RiverFile() = default;

std::vector<MapLine> RiverFile::in(const GeoBox& box) const {
    std::vector<MapLine> lines;
    for (const std::size_t bin : m_file->binsIn(box)) {
        const GeoBox binBox = m_file->boxOf(bin);
        m_file->forEachSegment(bin, [&](std::size_t segment, int level) {
            const int count = segment < m_counts.size() ? m_counts[segment] & 0xFFFF : 0;
            auto points = m_file->points(segment, static_cast<std::size_t>(count), binBox);
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
