// SPDX-License-Identifier: MIT
// Run by the build: packs the places that radar pictures can show.
//     pack_cities ALL.pbf PACKED.pbf
// Both files are of the form that readCities() reads; the packed one has what it makes use of, of
// the places within the reach of a radar and a degree more: a site's follower stands beside it.
#include "maps/city_file.h"
#include "maps/map_line.h"
#include "radar/catalogue/antenna_positions.h"
#include "radar/catalogue/image_geometry.h"

#include <QFile>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iostream>

namespace {

using namespace raincast;

constexpr double kMarginDegrees = 1;
constexpr double kUnitsPerDegree = 1e5;

std::vector<GeoBox> boxesOfSites() {
    std::vector<GeoBox> boxes;
    for (const AntennaPosition& antenna : antennaPositions()) {
        const ImageGeometry picture(antenna.latitude, antenna.longitude, Range::longRange);
        boxes.push_back(
            {picture.latitudeOfRow(kFrameHeight) - kMarginDegrees,
             picture.longitudeOfColumn(0) - kMarginDegrees,
             picture.latitudeOfRow(0) + kMarginDegrees,
             picture.longitudeOfColumn(kFrameWidth) + kMarginDegrees}
        );
    }
    return boxes;
}

QByteArray varint(std::uint64_t value) {
    QByteArray bytes;
    for (; value >= 0x80; value >>= 7U) {
        bytes += static_cast<char>(value | 0x80U);
    }
    return bytes + static_cast<char>(value);
}

QByteArray number(unsigned field, std::uint64_t value) {
    return varint(field << 3U) + varint(value);
}

QByteArray signedNumber(unsigned field, std::int64_t value) {
    return number(field, (static_cast<std::uint64_t>(value) << 1U) ^ (value < 0 ? ~0ULL : 0ULL));
}

QByteArray text(unsigned field, const QByteArray& bytes) {
    return varint(field << 3U | 2U) + varint(static_cast<std::uint64_t>(bytes.size())) + bytes;
}

QByteArray packed(const std::vector<City>& cities) {
    const std::vector<GeoBox> boxes = boxesOfSites();
    QByteArray bytes;
    std::int64_t east = 0;
    std::int64_t north = 0;
    for (const City& city : cities) {
        if (std::none_of(boxes.begin(), boxes.end(), [&city](const GeoBox& box) {
                return box.contains(city.position);
            })) {
            continue;
        }
        const std::int64_t x = std::llround(city.position.longitude * kUnitsPerDegree);
        const std::int64_t y = std::llround(city.position.latitude * kUnitsPerDegree);
        const QByteArray record = text(2, city.name.toUtf8()) + text(7, "PPL") +
                                  number(9, city.population) + signedNumber(10, x - east) +
                                  signedNumber(11, y - north);
        bytes += varint(static_cast<std::uint64_t>(record.size())) + record;
        east = x;
        north = y;
    }
    return bytes;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: pack_cities ALL.pbf PACKED.pbf\n";
        return 2;
    }
    QFile all(QString::fromLocal8Bit(argv[1]));
    QFile some(QString::fromLocal8Bit(argv[2]));
    if (!all.open(QIODevice::ReadOnly) || !some.open(QIODevice::WriteOnly)) {
        std::cerr << "pack_cities: cannot read " << argv[1] << " or write " << argv[2] << "\n";
        return 1;
    }
    const QByteArray bytes = packed(readCities(all.readAll()));
    if (bytes.isEmpty() || some.write(bytes) != bytes.size()) {
        std::cerr << "pack_cities: no places in " << argv[1] << ", or a full disk\n";
        return 1;
    }
    return 0;
}
