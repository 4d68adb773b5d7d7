// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace raincast {

/// A Level III product to be made for a test. Angles in tenths of a degree, positions in
/// thousandths. Unless set it is base reflectivity of TLX, with four radials of a quarter circle.
struct Level3ToMake {
    enum class Picture { radial, raster, digital, none };

    struct Row {
        int startTenths = 0; ///< radials only
        int widthTenths = 0; ///< radials only
        std::vector<std::uint8_t> cells;
    };

    int code = 19;
    int latitude = 35333;
    int longitude = -97278;
    int day = 15846; ///< 20 May 2013
    int second = 73003;
    int elevationTenths = 5;
    std::array<std::uint16_t, 16> thresholds{0x8002, 5,  10, 15, 20, 25, 30, 35,
                                             40,     45, 50, 55, 60, 65, 70, 75};
    Picture picture = Picture::radial;
    int firstBin = 0;
    std::vector<Row> rows{
        {0, 900, {0, 1, 2, 3}},
        {900, 900, {4, 5, 6, 7}},
        {1800, 900, {8, 9, 10, 11}},
        {2700, 900, {12, 13, 14, 15}},
    };
    std::string text{}; ///< a text packet before the picture, unless empty

    bool packed = false;         ///< with bzip2, from the symbology on
    bool startOfHeading = false; ///< SOH and ETX around everything
    std::string wmoHeading = "SDUS54 KOUN 202016";
    std::string awipsId = "N0RTLX";
    int zlibFrames = 0; ///< in how many zlib streams the headings and the message lie once more

    /// Gives it the date and time of a volume.
    void takenAt(FileTime volume);
};

/// The product's bytes.
[[nodiscard]] std::string makeLevel3(const Level3ToMake& wanted);

/// A digital product of a volume, with the usual thresholds of its kind: a code, and an AWIPS
/// identifier like "N0BTLX".
[[nodiscard]] Level3ToMake digitalProduct(const std::string& awipsId, int code, FileTime volume);

/// Base reflectivity as live radar has it, the digital N0B, of a site's volume at a time.
[[nodiscard]] Level3ToMake digitalReflectivity(const std::string& site, FileTime volume);

/// The thresholds of digital reflectivity and velocity: least value and increment in tenths.
[[nodiscard]] std::array<std::uint16_t, 16> digitalThresholds(int leastTenths, int incrementTenths);

/// The thresholds of digital accumulations.
[[nodiscard]] std::array<std::uint16_t, 16> accumulationThresholds(float scale, float offset);

} // namespace raincast
