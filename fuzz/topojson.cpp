// SPDX-License-Identifier: MIT
// Borders of any bytes: reading ends, every line has a rank that is known, and what is read can be
// drawn.
#include "maps/topojson.h"

#include "map_lines.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const auto lines = readTopology(bytes, QStringLiteral("states"));
    for (const MapLine& line : lines) {
        if (line.points.size() < 2 || line.rank < 0 || line.rank > 1) {
            std::abort();
        }
    }
    drawMapLines(lines);
    return 0;
}
