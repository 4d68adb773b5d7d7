// SPDX-License-Identifier: MIT
#include "map/map_overlays.h"

#include "geo/geo_reference.h"
#include "page/item_placement.h"

#include <algorithm>
#include <iterator>

namespace raincast {

namespace {

constexpr int kVisibleMargin = 50;

} // namespace

MapOverlays::MapOverlays() {
    for (COverlayObject* object : COverlayObject::all()) {
        m_entries[object];
    }
}

void MapOverlays::layout(COverlayObject& object, const GeoReference& geoReference) {
    m_entries[&object].layout(object, geoReference);
    m_seen.reset();
}

void MapOverlays::layoutAll(const GeoReference& geoReference) {
    for (auto& [object, entry] : m_entries) {
        entry.layout(*object, geoReference);
    }
    m_seen.reset();
}

void MapOverlays::forget(COverlayObject& object) {
    m_entries.erase(&object);
    m_inView.clear();
    m_seen.reset();
}

// There may be thousands of which a few are in view: the others cost nothing until something moves.
void MapOverlays::draw(QPainter& painter, const ViewTransform& view, const PageRectangle& area) {
    const Box seen = Box::seenIn(area, view);
    if (m_seen != seen) {
        findInView(seen);
    }
    for (Entries::value_type* each : m_inView) {
        each->first->Draw(painter, view, each->second.pointsOnPage(view));
    }
}

void MapOverlays::findInView(const Box& seen) {
    m_inView.clear();
    for (Entries::value_type& each : m_entries) {
        if (!each.second.points.empty() && each.second.box.meets(seen)) {
            m_inView.push_back(&each);
        }
    }
    std::stable_sort(m_inView.begin(), m_inView.end(), [](const auto* one, const auto* other) {
        return one->first->layer() < other->first->layer();
    });
    m_seen = seen;
}

void MapOverlays::Entry::layout(const COverlayObject& object, const GeoReference& geoReference) {
    points.clear();
    onPage.clear();
    if (geoReference.valid()) {
        object.Layout(points, geoReference);
    }
    box = Box::around(points);
}

const std::vector<PagePoint>& MapOverlays::Entry::pointsOnPage(const ViewTransform& present) {
    if (onPage.size() != points.size() || view != present) {
        view = present;
        onPage.clear();
        std::transform(
            points.begin(), points.end(), std::back_inserter(onPage),
            [this](const ImagePixel& pixel) { return view.toPage(pixel); }
        );
    }
    return onPage;
}

bool MapOverlays::Box::meets(const Box& other) const {
    return left <= other.right && other.left <= right && top <= other.bottom && other.top <= bottom;
}

MapOverlays::Box MapOverlays::Box::around(const std::vector<ImagePixel>& points) {
    if (points.empty()) {
        return {};
    }
    Box box{points[0].column, points[0].row, points[0].column, points[0].row};
    for (const ImagePixel& point : points) {
        box.left = std::min<std::int64_t>(box.left, point.column);
        box.top = std::min<std::int64_t>(box.top, point.row);
        box.right = std::max<std::int64_t>(box.right, point.column);
        box.bottom = std::max<std::int64_t>(box.bottom, point.row);
    }
    return box;
}

MapOverlays::Box MapOverlays::Box::seenIn(const PageRectangle& area, const ViewTransform& view) {
    const ImagePixel first = view.toImage({area.left, area.top});
    const ImagePixel last = view.toImage({area.right, area.bottom});
    return {
        std::int64_t{first.column} - kVisibleMargin, std::int64_t{first.row} - kVisibleMargin,
        std::int64_t{last.column} + kVisibleMargin, std::int64_t{last.row} + kVisibleMargin};
}

} // namespace raincast
