// SPDX-License-Identifier: MIT
#include "map/taken_cells.h"

#include <algorithm>

namespace raincast {

TakenCells::TakenCells(const QRect& area, int cellPixels)
    : m_area(area), m_cellPixels(cellPixels),
      m_columns((area.width() + cellPixels - 1) / cellPixels) {
    const int rows = (area.height() + cellPixels - 1) / cellPixels;
    m_taken.resize(static_cast<std::size_t>(indexOf(0, rows)));
}

bool TakenCells::isFree(const QRect& box) const {
    const QRect cells = cellsOf(box);
    for (int row = cells.top(); row <= cells.bottom(); ++row) {
        const auto from = m_taken.begin() + indexOf(cells.left(), row);
        const auto end = from + cells.width();
        if (std::find(from, end, true) != end) {
            return false;
        }
    }
    return true;
}

bool TakenCells::take(const QRect& box) {
    if (!isFree(box)) {
        return false;
    }
    const QRect cells = cellsOf(box);
    for (int row = cells.top(); row <= cells.bottom(); ++row) {
        std::fill_n(m_taken.begin() + indexOf(cells.left(), row), cells.width(), true);
    }
    return true;
}

QRect TakenCells::cellsOf(const QRect& box) const {
    const QRect inside = (box & m_area).translated(-m_area.topLeft());
    if (inside.isEmpty()) {
        return {};
    }
    return {
        QPoint(inside.left() / m_cellPixels, inside.top() / m_cellPixels),
        QPoint(inside.right() / m_cellPixels, inside.bottom() / m_cellPixels)};
}

std::ptrdiff_t TakenCells::indexOf(int column, int row) const {
    return std::ptrdiff_t{row} * m_columns + column;
}

} // namespace raincast
