// SPDX-License-Identifier: MIT
#pragma once

#include "geo/view_transform.h"

class QSize;

namespace raincast {

struct PageRectangle;

/// The view that fits an image into a rectangle of the page: the image's middle in the
/// rectangle's, at the greatest zoom at which nine tenths of its width and of its height are seen;
/// in a rectangle that is too small for that, at the least. What covers `coveredTop` pixels of its
/// upper part for a while moves the image down and leaves the zoom as it is: nobody under a warning
/// wants to see a storm shrink.
[[nodiscard]] ViewTransform
fittedView(const PageRectangle& rectangle, const QSize& image, int coveredTop = 0);

} // namespace raincast
