// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/image_geometry.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace raincast {

/// A picture of palette indices, a byte each, row by row: 600 × 550 pixels, or `detail` times as
/// many both ways.
class IndexedPicture {
public:
    explicit IndexedPicture(int detail = 1, std::uint8_t ground = 0)
        : m_width(kFrameWidth * detail), m_height(kFrameHeight * detail),
          m_pixels(static_cast<std::size_t>(m_width) * static_cast<std::size_t>(m_height), ground) {
    }

    [[nodiscard]] int width() const { return m_width; }
    [[nodiscard]] int height() const { return m_height; }
    [[nodiscard]] int detail() const { return m_width / kFrameWidth; }

    /// The pixels of a row, of which there are width().
    [[nodiscard]] std::uint8_t* row(int row) { return m_pixels.data() + offsetOf(row); }
    [[nodiscard]] const std::uint8_t* row(int row) const { return m_pixels.data() + offsetOf(row); }
    /// All of them.
    [[nodiscard]] const std::vector<std::uint8_t>& pixels() const { return m_pixels; }

    friend bool operator==(const IndexedPicture&, const IndexedPicture&) = default;

private:
    [[nodiscard]] std::ptrdiff_t offsetOf(int row) const { return std::ptrdiff_t{row} * m_width; }

    int m_width;
    int m_height;
    std::vector<std::uint8_t> m_pixels;
};

} // namespace raincast
