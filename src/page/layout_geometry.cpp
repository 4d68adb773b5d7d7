// SPDX-License-Identifier: MIT
#include "page/layout_geometry.h"

#include <QSize>

#include <algorithm>

namespace raincast {

PageRectangle gripOf(const PageRectangle& item, int gripSize) {
    return {item.right - gripSize, item.bottom - gripSize, item.right, item.bottom};
}

PageRectangle
resizedBy(const PageRectangle& item, int dx, int dy, const QSize& page, int gripSize) {
    PageRectangle result = item;
    result.right = std::max(std::min(item.right + dx, page.width()), item.left + gripSize);
    result.bottom = std::max(std::min(item.bottom + dy, page.height()), item.top + gripSize);
    return result;
}

PageRectangle movedBy(const PageRectangle& item, int dx, int dy, const QSize& page) {
    return item.shifted(
        std::max(std::min(dx, page.width() - item.right), -item.left),
        std::max(std::min(dy, page.height() - item.bottom), -item.top)
    );
}

} // namespace raincast
