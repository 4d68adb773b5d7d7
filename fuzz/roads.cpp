// SPDX-License-Identifier: MIT
// Roads of an operator's own: a GeoJSON text or, after a first byte S and a length of two bytes,
// the two files of a shapefile. Reading ends, and what is read can be drawn.
#include "map_lines.h"
#include "maps/road_file.h"

#include <QFile>
#include <QTemporaryDir>

namespace {

void write(const QString& path, QByteArrayView bytes) {
    QFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(bytes.data(), bytes.size());
    }
}

std::vector<raincast::MapLine> readShapefile(QByteArrayView bytes) {
    static const QTemporaryDir folder;
    const QString shapes = folder.filePath(QStringLiteral("roads.shp"));
    const auto byteAt = [&](qsizetype i) { return static_cast<unsigned char>(bytes[i]); };
    const qsizetype size = std::min(bytes.size() - 2, qsizetype{byteAt(0)} + 256 * byteAt(1));
    write(shapes, bytes.sliced(2, size));
    write(folder.filePath(QStringLiteral("roads.shx")), bytes.sliced(2 + size));
    return raincast::readRoads(shapes);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView bytes(data, static_cast<qsizetype>(size));
    const bool isShapefile = size >= 3 && data[0] == 'S';
    raincast::drawMapLines(
        isShapefile ? readShapefile(bytes.sliced(1))
                    : raincast::readGeoJsonLines(bytes.toByteArray())
    );
    return 0;
}
