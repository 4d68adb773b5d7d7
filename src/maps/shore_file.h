// SPDX-License-Identifier: MIT
#pragma once

#include "maps/map_line.h"

#include <QString>

#include <memory>
#include <vector>

namespace raincast {

/// A stretch of shore inside one bin, with land (or water) on one side. Its first and last point
/// show where it crosses the bin's border.
struct ShorePiece {
    int level = 0; ///< 1 land in the sea, 2 lake, 3 island in a lake, 4 pond on such an island
    bool closed = false; ///< a whole shore; otherwise it runs from border to border
    std::vector<GeoPosition> points;
};

/// One degree by one degree of the world's shores.
struct ShoreBin {
    GeoBox box;
    bool landAtSouthWest = false; ///< the south-west corner is land
    std::vector<ShorePiece> pieces;
};

// The two files of the GSHHG data (Wessel and Smith, "A Global Self-consistent, Hierarchical,
// High-resolution Shoreline Database") in their binned netCDF form. Both give nothing where the
// file is absent or damaged. They stay open and keep their tables, some megabytes, which take
// longer to read than the points of a box. One at a time of all of them, in several threads.

class BinnedFile;

class ShoreFile {
public:
    explicit ShoreFile(const QString& path);
    ~ShoreFile();
    ShoreFile(ShoreFile&&) noexcept = default;

    /// The bins that overlap a box.
    [[nodiscard]] std::vector<ShoreBin> in(const GeoBox& box) const;

private:
    std::unique_ptr<const BinnedFile> m_file;
    std::vector<int> m_corners;
};

class RiverFile {
public:
    explicit RiverFile(const QString& path);
    ~RiverFile();
    RiverFile(RiverFile&&) noexcept = default;

    /// The rivers of the bins that overlap a box. Ranks: 0 broad rivers, 1 to 4 rivers from major
    /// to minor, 5 to 7 those that fall dry, 8 to 10 canals.
    [[nodiscard]] std::vector<MapLine> in(const GeoBox& box) const;

private:
    std::unique_ptr<const BinnedFile> m_file;
    std::vector<int> m_counts;
};

/// The shore of a bin as rings whose even-odd filling is its land. Pieces that end at the border
/// are closed along it, away from the south-west corner.
[[nodiscard]] std::vector<std::vector<GeoPosition>> landRings(const ShoreBin& bin);

} // namespace raincast
