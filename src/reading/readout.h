// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"
#include "radar/catalogue/product.h"

#include <QStringList>

#include <cstddef>
#include <optional>

class QPainter;
class QPoint;
class QRect;

namespace raincast {

/// A place of a radar picture.
struct ReadPlace {
    GeoPosition position;
    GeoPosition radar;
    std::optional<GeoPosition> own;   ///< the user's position
    std::optional<Product> product;   ///< of the picture; none without a picture
    std::optional<std::size_t> level; ///< of the pixel's colour; none for one that no table knows
};

/// How far a product's pictures reach, in metres.
[[nodiscard]] double rangeMetres(Product product);

/// What a picture says of a place, a line each: its value, or "outside the radar's range"; its
/// position; distance and bearing from the radar and from the user; for products of the lowest beam
/// the height of its middle. In the user's units.
[[nodiscard]] QStringList readoutLines(const ReadPlace& place);

/// "12.3 Mi 045°": the way from one position to another.
[[nodiscard]] QString wayText(GeoPosition from, GeoPosition to);

/// Draws lines in a box beside a point of the page, inside of an area.
void drawReadout(QPainter& painter, const QRect& area, QPoint place, const QStringList& lines);

} // namespace raincast
