// SPDX-License-Identifier: MIT
#include "nexrad/level3_description.h"

#include "nexrad/level3_cursor.h"

#include <string>

namespace raincast {

namespace {

constexpr std::uint32_t kSecondsPerDay = 86'400;

/// Day 1 is 1 January 1970.
FileTime readTime(Level3Cursor& cursor) {
    const std::uint32_t day = cursor.u16("the volume scan's date");
    if (day == 0) {
        cursor.fail("the volume scan's date", 2, "0");
    }
    const std::uint32_t second = cursor.u32("the volume scan's time");
    if (second >= kSecondsPerDay) {
        cursor.fail("the volume scan's time", 4, std::to_string(second) + " seconds");
    }
    const FileTime seconds = static_cast<FileTime>(day - 1) * kSecondsPerDay + second;
    return cursor.ok() ? kUnixEpoch + seconds * kFileTimePerSecond : 0;
}

double readDegrees(Level3Cursor& cursor, const char* field, int most) {
    const std::int32_t thousandths = cursor.s32(field);
    if (thousandths < -1000 * most || thousandths > 1000 * most) {
        cursor.fail(field, 4, std::to_string(thousandths) + " thousandths of a degree");
    }
    return thousandths / 1000.0;
}

} // namespace

Level3Description readLevel3Description(Level3Cursor& cursor) {
    Level3Description description;
    cursor.skip("the message header", 18);
    cursor.expect16("the product description's divider", 0xFFFF);
    description.latitude = readDegrees(cursor, "the radar's latitude", 90);
    description.longitude = readDegrees(cursor, "the radar's longitude", 180);
    cursor.skip("the radar's height", 2);
    description.code = static_cast<int>(cursor.u16("the product code"));
    cursor.skip("mode, coverage pattern and numbers of the volume scan", 8);
    description.volumeTime = readTime(cursor);
    cursor.skip("the product's own time", 6);
    cursor.skip("the first product-dependent halfwords", 6);
    description.elevationDegrees = cursor.s16("the elevation angle") / 10.0;
    for (std::uint16_t& threshold : description.thresholds) {
        threshold = static_cast<std::uint16_t>(cursor.u16("the data level thresholds"));
    }
    cursor.skip("the last product-dependent halfwords and the version", 16);
    description.symbologyOffset = cursor.u32("the symbology's offset");
    cursor.skip("the offsets of the other blocks", 8);
    return description;
}

} // namespace raincast
