// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

#include <vector>

namespace raincast {

/// The places of a rectangle that something was put on, in cells of a few pixels: so that what
/// comes later can give way. What lies outside is nobody's and always free.
class TakenCells {
public:
    TakenCells(const QRect& area, int cellPixels);

    [[nodiscard]] bool isFree(const QRect& box) const;
    /// Takes all cells that a box reaches into. False, and nothing is taken, where one is taken.
    [[nodiscard]] bool take(const QRect& box);

private:
    [[nodiscard]] QRect cellsOf(const QRect& box) const;
    [[nodiscard]] std::ptrdiff_t indexOf(int column, int row) const;

    QRect m_area;
    int m_cellPixels;
    int m_columns;
    std::vector<bool> m_taken; ///< row by row
};

} // namespace raincast
