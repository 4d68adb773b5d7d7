// SPDX-License-Identifier: MIT
// Shores and rivers whose tables hold any numbers. (The netCDF library, which reads the tables, is
// tried by the target netcdf.) Reading ends, and what is read can be drawn.
#include "map_lines.h"
#include "maps/shore_file.h"

#include <QTemporaryDir>

#include <netcdf.h>

#include <algorithm>
#include <string>

namespace {

using namespace raincast;

const char* const kTables[] = {
    "Bin_size_in_minutes",
    "N_bins_in_360_longitude_range",
    "Id_of_first_segment_in_a_bin",
    "N_segments_in_a_bin",
    "Id_of_first_point_in_a_segment",
    "Relative_longitude_from_SW_corner_of_bin",
    "Relative_latitude_from_SW_corner_of_bin",
    "Embedded_npts_levels_exit_entry_for_a_segment",
    "Embedded_node_levels_in_a_bin",
    "Hierarchial_level_of_a_segment",
    "N_points_for_a_segment",
};

/// Takes a count (one byte) and as many numbers (four bytes each).
std::vector<int> takeNumbers(const std::uint8_t*& data, std::size_t& size) {
    if (size == 0) {
        return {};
    }
    std::vector<int> numbers(std::min<std::size_t>(data[0], (size - 1) / 4));
    std::copy_n(data + 1, numbers.size() * 4, reinterpret_cast<std::uint8_t*>(numbers.data()));
    data += 1 + numbers.size() * 4;
    size -= 1 + numbers.size() * 4;
    return numbers;
}

/// Writes the tables that are not empty: a length of none would be one without limit.
void writeTables(int file, const std::vector<std::vector<int>>& tables) {
    std::vector<int> variables(tables.size());
    for (std::size_t i = 0; i < tables.size(); ++i) {
        int dimension = 0;
        if (!tables[i].empty()) {
            const std::string name = kTables[i];
            nc_def_dim(file, (name + "_size").c_str(), tables[i].size(), &dimension);
            nc_def_var(file, kTables[i], NC_INT, 1, &dimension, &variables[i]);
        }
    }
    nc_enddef(file);
    for (std::size_t i = 0; i < tables.size(); ++i) {
        if (!tables[i].empty()) {
            nc_put_var_int(file, variables[i], tables[i].data());
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("shores.nc"));
    int file = 0;
    if (nc_create(path.toUtf8().constData(), NC_CLOBBER, &file) != NC_NOERR) {
        return 0;
    }
    std::vector<std::vector<int>> tables(std::size(kTables));
    for (std::vector<int>& table : tables) {
        table = takeNumbers(data, size);
    }
    writeTables(file, tables);
    nc_close(file);
    const GeoBox box = LayerCanvas(ImageGeometry(35, -97, Range::shortRange)).box();
    drawMapLines(RiverFile(path).in(box));
    for (const ShoreBin& bin : ShoreFile(path).in(box)) {
        std::vector<MapLine> lines;
        for (auto& ring : landRings(bin)) {
            lines.push_back({0, std::move(ring)});
        }
        drawMapLines(lines);
    }
    return 0;
}
