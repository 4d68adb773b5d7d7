// SPDX-License-Identifier: MIT
#include "stations/state_outlines.h"

#include <cstddef>

namespace raincast {

namespace {

std::vector<std::span<const OutlinePoint>> divided(std::span<const OutlinePoint> points) {
    std::vector<std::span<const OutlinePoint>> lines;
    while (!points.empty()) {
        const auto count = static_cast<std::size_t>(points.front().longitude);
        lines.push_back(points.subspan(1, count));
        points = points.subspan(1 + count);
    }
    return lines;
}

} // namespace

const std::vector<std::span<const OutlinePoint>>& stateOutlines() {
    static const auto lines = divided(stateOutlinePoints());
    return lines;
}

} // namespace raincast
