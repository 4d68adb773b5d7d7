// SPDX-License-Identifier: MIT
#include "sample/sample_weather.h"

#include "nexrad/frame_painter.h"
#include "radar/catalogue/antenna_positions.h"
#include "sample/sample_noise.h"
#include "sample/sample_scan.h"
#include "sample/sample_warnings.h"

#include <algorithm>
#include <array>

namespace raincast {

namespace {

// A quarter of an hour holds three frames, at gaps that change from one to the next.
constexpr std::int64_t kBlockMinutes = 15;
constexpr std::array<std::array<std::int64_t, 3>, 6> kFramesInBlock = {{
    {0, 4, 9},
    {0, 4, 10},
    {0, 5, 9},
    {0, 5, 11},
    {0, 6, 10},
    {0, 6, 11},
}};

/// The minutes (since 1970) of the frames of a block.
std::array<std::int64_t, 3> framesOf(std::uint64_t seed, std::int64_t block) {
    std::array<std::int64_t, 3> minutes =
        kFramesInBlock[mixed(seed + 91, block) % kFramesInBlock.size()];
    const auto shift = static_cast<std::int64_t>(seed % kBlockMinutes);
    for (std::int64_t& minute : minutes) {
        minute += block * kBlockMinutes + shift;
    }
    return minutes;
}

bool isFrame(std::string_view site, FileTime time) {
    const std::int64_t minute = (time - kUnixEpoch) / kFileTimePerMinute;
    const std::uint64_t seed = sampleClimate(site).seed;
    for (const std::int64_t block : {minute / kBlockMinutes - 1, minute / kBlockMinutes}) {
        const auto minutes = framesOf(seed, block);
        if (std::find(minutes.begin(), minutes.end(), minute) != minutes.end()) {
            return time == kUnixEpoch + minute * kFileTimePerMinute;
        }
    }
    return false;
}

} // namespace

std::vector<FileTime>
SampleWeather::frameTimes(std::string_view site, Product /*product*/, FileTime upTo) const {
    std::vector<FileTime> times;
    if (findAntenna(site) == nullptr || upTo < kUnixEpoch) {
        return times;
    }
    const std::uint64_t seed = sampleClimate(site).seed;
    const std::int64_t last = (upTo - kUnixEpoch) / kFileTimePerMinute;
    const std::int64_t first = last - std::int64_t{60} * m_hours;
    for (std::int64_t block = first / kBlockMinutes - 1; block <= last / kBlockMinutes; ++block) {
        for (const std::int64_t minute : framesOf(seed, block)) {
            if (minute > first && minute <= last) {
                times.push_back(kUnixEpoch + minute * kFileTimePerMinute);
            }
        }
    }
    return times;
}

std::optional<QByteArray>
SampleWeather::frame(std::string_view site, Product product, FileTime time) const {
    const AntennaPosition* antenna = findAntenna(site);
    if (antenna == nullptr || !isFrame(site, time)) {
        return std::nullopt;
    }
    return renderFrame(sampleScan(*antenna, product, time, m_memory), product);
}

std::optional<QByteArray>
SampleWeather::sharpFrame(std::string_view site, Product product, FileTime time, int detail) const {
    const AntennaPosition* antenna = findAntenna(site);
    if (antenna == nullptr || !isFrame(site, time)) {
        return std::nullopt;
    }
    const PolarScan scan = sampleScan(*antenna, product, time, m_memory, Fineness::sharp);
    return renderFrame(scan, product, frameGeometry(scan, rangeOf(product), detail));
}

WeatherWarnings SampleWeather::warnings(std::string_view site, Range range, FileTime time) const {
    const AntennaPosition* antenna = findAntenna(site);
    WeatherWarnings warnings{{}, true};
    if (antenna != nullptr) {
        warnings.warnings = sampleWarnings(*antenna, range, time);
    }
    return warnings;
}

} // namespace raincast
