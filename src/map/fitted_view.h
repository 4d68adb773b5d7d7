// SPDX-License-Identifier: MIT
#pragma once

#include "geo/view_transform.h"

class QSize;

namespace raincast {

struct PageRectangle;

/// The view that fits an image into a rectangle of the page: the image's middle in the
/// rectangle's, at the greatest zoom at which nine tenths of its width and of its height are seen;
/// in a rectangle that is too small for that, at the least.
[[nodiscard]] ViewTransform fittedView(const PageRectangle& rectangle, const QSize& image);

} // namespace raincast
