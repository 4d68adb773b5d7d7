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

void CellAxis::find(const Places& places, Cells& cells) const {
    for (std::size_t i = 0; i < kFrameWidth; ++i) {
        cells[i] = cellOf(places[i]);
    }
}

// Without branches, so that the compiler does several at a time.
int CellAxis::cellOf(float place) const {
    const float along = place * m_perUnit + m_offset;
    const float atLeast0 = along > 0 ? along : 0;
    const int cell = static_cast<int>(atLeast0 < m_count ? atLeast0 : m_count);
    const float beyondEdge = along - static_cast<float>(cell);
    const int ifBeyond = beyondEdge > m_error ? cell : kUnsure;
    const int ifClear = beyondEdge < 1 - m_error ? ifBeyond : kUnsure;
    const int ifBefore = along < m_count + m_error ? ifClear : kOutside;
    const int ifInside = along > -m_error ? ifBefore : kOutside;
    return std::isnan(place) ? kUnsure : ifInside;
}

} // namespace raincast
