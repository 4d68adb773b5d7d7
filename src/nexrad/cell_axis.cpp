// SPDX-License-Identifier: MIT
#include "nexrad/cell_axis.h"

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

// What single precision adds to the error, for each cell.
constexpr double kRounding = 3e-7;

} // namespace

CellAxis::CellAxis(int count, double first, double length, double error)
    : m_count(static_cast<float>(count)), m_perUnit(static_cast<float>(1 / length)),
      m_offset(static_cast<float>(-first / length)),
      // Who may be wrong by a cell is never sure.
      m_error(static_cast<float>(
          std::min(1.0, error / std::abs(length) + kRounding * (count + std::abs(first / length)))
      )) {}

// Without branches and calls, so that the compiler does several at a time.
void CellAxis::find(const Places& places, Cells& cells) const {
    const CellAxis axis = *this; // which nothing that is written can change
    for (std::size_t i = 0; i < kRunLength; ++i) {
        const float along = places[i] * axis.m_perUnit + axis.m_offset;
        const float atLeast0 = along > 0 ? along : 0;
        const int cell = static_cast<int>(atLeast0 < axis.m_count ? atLeast0 : axis.m_count);
        const float beyondEdge = along - static_cast<float>(cell);
        const int ifBeyond = beyondEdge > axis.m_error ? cell : kUnsure;
        const int ifClear = beyondEdge < 1 - axis.m_error ? ifBeyond : kUnsure;
        const int ifBefore = along < axis.m_count + axis.m_error ? ifClear : kOutside;
        const int ifInside = along > -axis.m_error ? ifBefore : kOutside;
        cells[i] = std::isnan(places[i]) ? kUnsure : ifInside;
    }
}

} // namespace raincast
