// SPDX-License-Identifier: MIT
#pragma once

#include "map/text_key.h"
#include "radar/catalogue/product.h"

#include <QImage>
#include <QRect>

#include <cstddef>
#include <optional>

class QPainter;

namespace raincast {

/// The scale of a radar picture: a column of its product's colours with their numbers, the unit
/// above, along the right edge of an item. It keeps its picture for as long as that stays the same.
class ScaleBar {
public:
    /// Draws the scale into `room`, at its right edge and in the middle of its height. The value of
    /// a level that is marked stands out. Where the room is low, rows get lower and some numbers
    /// are left out.
    void
    draw(QPainter& painter, const QRect& room, Product product, std::optional<std::size_t> marked);

    /// Draws the unit alone, for a tap to show the scale.
    void drawBadge(QPainter& painter, const QRect& room, Product product);

    /// Where either was drawn last, to be tapped; empty before.
    [[nodiscard]] const QRect& area() const { return m_area; }
    void hide() { m_area = {}; }

private:
    [[nodiscard]] QImage
    picture(const QPainter& painter, int rowHeight, Product product, std::size_t marked) const;

    QImage m_picture;
    /// What the picture depends on.
    struct Shown {
        Product product;
        std::size_t marked;
        int rowHeight;
        TextKey unit;

        friend bool operator==(const Shown&, const Shown&) = default;
    };
    std::optional<Shown> m_shown;
    QRect m_area;
};

} // namespace raincast
