// SPDX-License-Identifier: MIT
#pragma once

#include "server/frame_source.h"
#include "server/polar_scan.h"

#include <optional>

namespace raincast {

/// Weather that is made up, for every site of the tree: storms that move, grow and die, a band of
/// steady rain and ground clutter near the radar. It depends on nothing but site, product and
/// minute, so two servers show the same. Every picture says "SAMPLE".
class SampleWeather : public FrameSource {
public:
    /// How far back frames reach.
    explicit SampleWeather(int hours = 4) : m_hours(hours) {}

    /// A frame every 4 to 6 minutes; all products of a site share their times.
    [[nodiscard]] std::vector<FileTime>
    frameTimes(std::string_view site, Product product, FileTime upTo) const override;
    [[nodiscard]] std::string
    frame(std::string_view site, Product product, FileTime time) const override;
    [[nodiscard]] std::string
    warnings(std::string_view site, Range range, FileTime time) const override;

    /// The scan that a frame is painted from; nothing for a site that is not known. Any minute will
    /// do, also one without a frame.
    [[nodiscard]] static std::optional<PolarScan>
    scan(std::string_view site, Product product, FileTime time);

private:
    int m_hours;
};

} // namespace raincast
