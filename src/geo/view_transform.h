// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"

#include <cstdint>

namespace raincast {

/// A pixel of the page, in the page's client coordinates.
struct PagePoint {
    std::int32_t x = 0;
    std::int32_t y = 0;

    friend bool operator==(const PagePoint&, const PagePoint&) = default;
};

/// Maps pixels of the page to pixels of an image and back, with shifts only. Zoom 0 shows one image
/// pixel per page pixel, n > 0 shows 2^n (zoomed out), n < 0 shows each image pixel as 2^-n page
/// pixels (zoomed in). Whatever the numbers, a page file's too, nothing overflows: results beyond
/// 32 bits are the nearest that they hold.
class ViewTransform {
public:
    static constexpr int kLeastZoom = -2;
    static constexpr int kMostZoom = 4;

    ViewTransform() = default;
    /// A zoom out of range becomes 0. `origin` is taken as it is.
    ViewTransform(int zoom, ImagePixel origin);

    [[nodiscard]] int zoom() const { return m_zoom; }
    /// The image pixel at page pixel (0, 0).
    [[nodiscard]] ImagePixel origin() const { return m_origin; }

    [[nodiscard]] ImagePixel toImage(PagePoint point) const;
    [[nodiscard]] PagePoint toPage(ImagePixel pixel) const;

    /// Moves the origin so that `point` shows `pixel`. Zoomed out, the origin is then rounded down
    /// to a whole block of 2^zoom image pixels.
    void placeOrigin(PagePoint point, ImagePixel pixel);

    /// One step out (+1) or in (-1), so that `fixed` goes on showing the pixel it shows, to within
    /// the origin's rounding. False, and nothing changes, beyond the ends of the range.
    bool zoomBy(int step, PagePoint fixed);

    /// The same view of a picture with 2^steps times as many pixels each way. To be called at a
    /// zoom of at most kMostZoom - steps.
    [[nodiscard]] ViewTransform finer(int steps) const;

    friend bool operator==(const ViewTransform&, const ViewTransform&) = default;

private:
    int m_zoom = 0;
    ImagePixel m_origin;
};

} // namespace raincast
