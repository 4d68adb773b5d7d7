// SPDX-License-Identifier: MIT
#pragma once

#include "sample/sample_memory.h"
#include "tree/frame_source.h"

namespace raincast {

/// Weather that is made up, for every site of the tree: storms that move, grow and die, a band of
/// steady rain and ground clutter near the radar. It depends only on site, product and
/// minute, so two servers show the same. Every picture says "SAMPLE".
class SampleWeather : public FrameSource {
public:
    /// How far back frames reach.
    explicit SampleWeather(int hours = 4) : m_hours(hours) {}

    /// A frame every 4 to 6 minutes; all products of a site share their times.
    [[nodiscard]] std::vector<FileTime>
    frameTimes(std::string_view site, Product product, FileTime upTo) const override;
    [[nodiscard]] std::optional<QByteArray>
    frame(std::string_view site, Product product, FileTime time) const override;
    [[nodiscard]] std::optional<QByteArray>
    sharpFrame(std::string_view site, Product product, FileTime time, int detail) const override;
    [[nodiscard]] WeatherWarnings
    warnings(std::string_view site, Range range, FileTime time) const override;

private:
    int m_hours;
    mutable SampleMemory m_memory;
};

} // namespace raincast
