// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QRgb>

#include <cstddef>
#include <vector>

class QImage;
class QRect;

namespace raincast {

/// The pixels of rings round a place, black with a white edge. Finding them takes its time, and a
/// map is drawn again at every move: whoever draws them keeps them.
class RingPixels {
public:
    /// Half axes of the first ring, in pixels; the others are twice, three times... as large.
    struct Rings {
        double width = 0;
        double height = 0;
        int count = 0;

        friend bool operator==(const Rings&, const Rings&) = default;
    };
    /// Larger ones have more pixels than are worth keeping.
    static constexpr int kMostReach = 2000;

    /// Of rings that reach at most kMostReach pixels.
    [[nodiscard]] static RingPixels of(const Rings& rings);
    /// The same, kept from the last time.
    [[nodiscard]] static const RingPixels& kept(const Rings& rings);

    /// Draws into a picture of 32 bits, round a place, what lies in an area of it.
    void draw(QImage& target, const QRect& area, QPoint place) const;

private:
    struct Pixel {
        int column; ///< from the place
        QRgb colour;
    };
    void take(const QRgb* line, int from, int to);

    int m_top = 0;                   ///< the first row, from the place
    std::vector<Pixel> m_pixels;     ///< row by row, from left to right
    std::vector<std::size_t> m_ends; ///< of each row's pixels
};

} // namespace raincast
