// SPDX-License-Identifier: MIT
#include "nexrad/level3_decoder.h"

#include "nexrad/bounded_unpack.h"
#include "nexrad/level3_cursor.h"
#include "nexrad/level3_description.h"
#include "nexrad/level3_kinds.h"
#include "nexrad/level3_levels.h"
#include "nexrad/level3_symbology.h"
#include "nexrad/level3_wrapping.h"
#include "radar/catalogue/antenna_positions.h"

#include <cmath>
#include <utility>

namespace raincast {

namespace {

constexpr std::size_t kMostUnpacked = std::size_t{8} * 1024 * 1024;
constexpr double kDegree = 3.14159265358979323846 / 180;
constexpr double kLowestBeamDegrees = 0.7; // the second beam is at 0.8 or above
constexpr double kSamePlaceDegrees = 0.05;

using Check = tl::expected<void, QString>;

tl::unexpected<QString> problem(const std::string& sentence) {
    return tl::unexpected(QString::fromStdString(sentence));
}

/// The three letters of a heading's "N0RTLX". Without a heading, found by the antenna's place.
std::string siteOf(const std::string& awipsId, const PolarScan& scan) {
    if (awipsId.size() > 3) {
        return awipsId.substr(awipsId.size() - 3);
    }
    for (const AntennaPosition& antenna : antennaPositions()) {
        if (std::abs(antenna.latitude - scan.latitude) < kSamePlaceDegrees &&
            std::abs(antenna.longitude - scan.longitude) < kSamePlaceDegrees) {
            return std::string(antenna.id);
        }
    }
    return {};
}

std::string unsupported(int code, std::size_t messageOffset) {
    std::string known;
    for (const Level3Kind& kind : level3Kinds()) {
        known += (known.empty() ? "" : ", ") + std::to_string(kind.code);
    }
    constexpr std::size_t kCodeOffset = 30;
    return "the product code at byte " + std::to_string(messageOffset + kCodeOffset) + " is " +
           std::to_string(code) + ", which cannot be rendered (those that can: " + known + ")";
}

PolarScan
describe(const Level3Description& description, const Level3Kind& kind, const std::string& awipsId) {
    PolarScan scan;
    scan.product = kind.product;
    scan.code = kind.code;
    scan.time = description.volumeTime;
    scan.latitude = description.latitude;
    scan.longitude = description.longitude;
    scan.elevationDegrees = kind.hasElevation ? description.elevationDegrees : 0;
    // Distances along the beam are a little shorter on the ground.
    scan.cellKm = kind.cellKm * std::cos(scan.elevationDegrees * kDegree);
    scan.site = siteOf(awipsId, scan);
    return scan;
}

/// Reads the blocks behind the description.
Check readBlocks(
    QByteArrayView bytes, std::size_t offset, const std::string& place,
    std::uint32_t symbologyOffset, PolarScan& scan
) {
    Level3Cursor cursor(bytes, offset, place);
    const std::size_t skipped = std::size_t{symbologyOffset} * 2 - kLevel3HeadBytes;
    cursor.skip("what stands before the symbology", skipped);
    readLevel3Symbology(cursor, scan);
    return cursor.result();
}

/// The blocks may be packed with bzip2, whichever the code.
Check readPicture(
    const Level3Cursor& head, const Level3Message& message, std::uint32_t symbologyOffset,
    PolarScan& scan
) {
    if (symbologyOffset == 0) {
        scan.note = "The product holds no picture.";
        return {};
    }
    if (symbologyOffset * 2 < kLevel3HeadBytes) {
        return problem(
            "the symbology's offset in the product description is " +
            std::to_string(symbologyOffset) + " halfwords, which lies before its end"
        );
    }
    const QByteArrayView rest = head.rest();
    const std::string place = message.unpacked ? "of the unpacked message" : "";
    if (!rest.startsWith("BZh")) {
        return readBlocks(rest, head.offset(), place, symbologyOffset, scan);
    }
    const auto unpacked = unpackBzip2(rest, kMostUnpacked);
    if (!unpacked) {
        return problem(
            "the bzip2 data at byte " + std::to_string(head.offset()) +
            (place.empty() ? "" : " " + place) + " are damaged, cut off or hold more than 8 MiB"
        );
    }
    return readBlocks(
        *unpacked, kLevel3HeadBytes, "of the unpacked product", symbologyOffset, scan
    );
}

} // namespace

Level3Result decodeLevel3(QByteArrayView bytes) {
    const auto message = unwrapLevel3(bytes);
    if (!message) {
        return tl::unexpected(message.error());
    }
    Level3Cursor cursor(
        message->bytes, message->offset, message->unpacked ? "of the unpacked message" : ""
    );
    const Level3Description description = readLevel3Description(cursor);
    if (!cursor.ok()) {
        return tl::unexpected(cursor.result().error());
    }
    const Level3Kind* kind = findLevel3Kind(description.code);
    if (kind == nullptr) {
        return problem(unsupported(description.code, message->offset));
    }
    PolarScan scan = describe(description, *kind, message->awipsId);
    const Check read = readLevel3Levels(description, *kind, message->offset, scan).and_then([&] {
        return readPicture(cursor, *message, description.symbologyOffset, scan);
    });
    if (!read) {
        return tl::unexpected(read.error());
    }
    return scan;
}

std::vector<Product> publishedAs(const PolarScan& scan) {
    const Level3Kind* kind = findLevel3Kind(scan.code);
    if (kind == nullptr || scan.elevationDegrees > kLowestBeamDegrees) {
        return {};
    }
    std::vector<Product> products = {kind->product};
    if (kind->also) {
        products.push_back(*kind->also);
    }
    return products;
}

} // namespace raincast
