// SPDX-License-Identifier: MIT
#include "map/fitted_view.h"

#include "page/item_placement.h"

#include <QSize>

#include <cstdint>

namespace raincast {

namespace {

/// Whether so many pixels of the page show nine tenths of so many of an image.
bool showsMost(int page, int image, int zoom) {
    const std::int64_t shown = zoom >= 0 ? std::int64_t{page} << zoom : page >> -zoom;
    return shown * 10 >= std::int64_t{image} * 9;
}

} // namespace

ViewTransform fittedView(const PageRectangle& rectangle, const QSize& image, int coveredTop) {
    const int width = rectangle.right - rectangle.left;
    const int height = rectangle.bottom - rectangle.top;
    int zoom = ViewTransform::kLeastZoom;
    while (zoom < ViewTransform::kMostZoom &&
           !(showsMost(width, image.width(), zoom) && showsMost(height, image.height(), zoom))) {
        ++zoom;
    }
    ViewTransform view(zoom, {});
    PageRectangle seen = rectangle;
    seen.top += coveredTop;
    view.placeOrigin(seen.centre(), {image.width() / 2, image.height() / 2});
    return view;
}

} // namespace raincast
