// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_reference.h"
#include "geo/view_transform.h"

#include <QPoint>
#include <QRect>

#include <optional>

namespace raincast {

/// A map on a page: where it is seen, and how its positions and the page's pixels belong together.
/// The reference is borrowed.
struct MapSight {
    QRect area; ///< pixels of the page
    ViewTransform view;
    const GeoReference& reference;

    /// The middle of the pixel of the page that shows a position; far outside of the area for one
    /// that is far away.
    [[nodiscard]] QPoint onPage(GeoPosition position) const;
    /// The position in the middle of the image's pixel under a point, on the image or beside it.
    [[nodiscard]] GeoPosition at(QPoint point) const;
};

} // namespace raincast
