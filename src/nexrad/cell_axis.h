// SPDX-License-Identifier: MIT
#pragma once

#include "nexrad/pixel_run.h"

namespace raincast {

/// Says which cells of a line of them the places of some pixels lie in, where the places are
/// not quite exact.
class CellAxis {
public:
    using Places = PixelRun<float>;
    using Cells = PixelRun<int>;
    static constexpr int kOutside = -1; ///< before or behind all cells
    static constexpr int kUnsure = -2;  ///< next to an edge: the exact place may be beyond it

    /// `count` cells, the first of which begins at `first`; each is `length` long, which is below 0
    /// where they run against the places' direction. Places are wrong by `error` at most.
    CellAxis(int count, double first, double length, double error);

    /// The cell of each place: 0 to count - 1, kOutside or kUnsure. Of NaN nothing is sure.
    void find(const Places& places, Cells& cells) const;

private:
    float m_count;
    float m_perUnit;
    float m_offset;
    float m_error; ///< cells
};

} // namespace raincast
