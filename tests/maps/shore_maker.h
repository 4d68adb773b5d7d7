// SPDX-License-Identifier: MIT
#pragma once

#include "netcdf_maker.h"

#include <utility>

namespace raincast {

/// A segment of a binned file: offsets east and north of its bin's corner, 0 to 65535.
struct SegmentToMake {
    int level;
    bool closed;
    std::vector<std::pair<int, int>> points;
};

/// The bin of 38 to 39 north, 78 to 77 west.
inline constexpr int kTestBin = (90 - 39) * 360 + (360 - 78);

/// Writes the file of shores, or of rivers, of a world that is empty but for one bin. `corners` are
/// the levels of that bin's corners: south-west, south-east, north-east, north-west.
inline void makeBinnedFile(
    const QString& path, bool isRivers, const std::vector<SegmentToMake>& segments,
    const std::vector<int>& corners = {0, 0, 0, 0}
) {
    constexpr std::size_t kBins = 360 * 180;
    std::vector<int> counts(kBins);
    std::vector<int> nodes(kBins);
    counts[kTestBin] = static_cast<int>(segments.size());
    nodes[kTestBin] = corners[0] << 9 | corners[1] << 6 | corners[2] << 3 | corners[3];
    std::vector<int> info;
    std::vector<int> sizes;
    std::vector<int> first;
    std::vector<int> east;
    std::vector<int> north;
    for (const SegmentToMake& segment : segments) {
        const int size = static_cast<int>(segment.points.size());
        const int side = segment.closed ? 4 : 0;
        info.push_back(
            isRivers ? segment.level : size << 9 | segment.level << 6 | side << 3 | side
        );
        sizes.push_back(size);
        first.push_back(static_cast<int>(east.size()));
        for (const auto& [x, y] : segment.points) {
            east.push_back(x);
            north.push_back(y);
        }
    }
    const NetcdfMaker maker(path);
    maker.ints("Bin_size_in_minutes", {60});
    maker.ints("N_bins_in_360_longitude_range", {360});
    maker.ints("Id_of_first_segment_in_a_bin", std::vector<int>(kBins));
    maker.shorts("N_segments_in_a_bin", counts);
    maker.ints("Id_of_first_point_in_a_segment", first);
    maker.shorts("Relative_longitude_from_SW_corner_of_bin", east);
    maker.shorts("Relative_latitude_from_SW_corner_of_bin", north);
    if (isRivers) {
        maker.shorts("Hierarchial_level_of_a_segment", info);
        maker.shorts("N_points_for_a_segment", sizes);
    } else {
        maker.ints("Embedded_npts_levels_exit_entry_for_a_segment", info);
        maker.shorts("Embedded_node_levels_in_a_bin", nodes);
    }
}

} // namespace raincast
