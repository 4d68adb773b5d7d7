// SPDX-License-Identifier: MIT
#pragma once

#include "sample/sample_memory.h"
#include "sample/sample_storm.h"

#include <cstdint>
#include <vector>

namespace raincast {

/// Inches of rain that the sample weather has let fall around one antenna over some time, on a grid
/// of 3 km.
class SampleAccumulation {
public:
    /// From `firstMinute` (not counted) to `lastMinute`, within `reachKm` of the antenna. Sums with
    /// the same beginning share their work through the memory, which does not change them.
    SampleAccumulation(
        const SampleClimate& climate, std::int64_t firstMinute, std::int64_t lastMinute,
        double reachKm, SampleMemory& memory
    );

    /// At a place; 0 outside the reach.
    [[nodiscard]] double inchesAt(PlaneVector place) const;

private:
    [[nodiscard]] PlaneVector nodePlace(int column, int row) const;
    [[nodiscard]] SampleGrid rainAt(const SampleClimate& climate, std::int64_t minute) const;
    void addWholeSteps(
        const SampleClimate& climate, std::int64_t firstMinute, std::int64_t lastMinute,
        SampleMemory& memory
    );
    void addStep(
        const SampleClimate& climate, std::int64_t step, std::int64_t minutes, SampleMemory& memory
    );
    [[nodiscard]] double atNode(int column, int row) const;

    int m_halfNodes; ///< from the middle to each edge
    int m_nodes;     ///< along each edge
    double m_reachKm;
    SampleGrid m_inches;
};

/// Millimetres an hour for an echo, by the relation that the radars use (Z = 300 R^1.4), at most
/// 104, because of hail; 0 below 5 dBZ.
[[nodiscard]] double rainMillimetresAnHour(double dbz);

} // namespace raincast
