// SPDX-License-Identifier: MIT
#pragma once

#include "geo/view_transform.h"
#include "map/overlay_object.h"

#include <cstdint>
#include <map>
#include <optional>
#include <vector>

class QPainter;

namespace raincast {

class GeoReference;
struct PageRectangle;

/// The overlays of one map view: where the points of each lie in the image, and on the page for as
/// long as the view stays the same.
class MapOverlays {
public:
    /// Knows every overlay that exists; none is laid out yet.
    MapOverlays();

    /// Lays out an overlay that is new or has changed. On an image that is not placed it has no
    /// points and is not drawn.
    void layout(COverlayObject& object, const GeoReference& geoReference);
    void layoutAll(const GeoReference& geoReference);
    void forget(COverlayObject& object);

    /// Draws those that come within 50 image pixels of a rectangle of the page, layer by layer
    /// (COverlayObject::layer).
    void draw(QPainter& painter, const ViewTransform& view, const PageRectangle& area);

private:
    /// Image pixels, all four edges within. Wide enough for a margin around any pixel.
    struct Box {
        std::int64_t left = 0;
        std::int64_t top = 0;
        std::int64_t right = 0;
        std::int64_t bottom = 0;

        friend bool operator==(const Box&, const Box&) = default;
        [[nodiscard]] bool meets(const Box& other) const;
        [[nodiscard]] static Box around(const std::vector<ImagePixel>& points);
        [[nodiscard]] static Box seenIn(const PageRectangle& area, const ViewTransform& view);
    };

    struct Entry {
        std::vector<ImagePixel> points;
        Box box; ///< around the points
        std::vector<PagePoint> onPage;
        ViewTransform view; ///< that the points on the page are of

        void layout(const COverlayObject& object, const GeoReference& geoReference);
        [[nodiscard]] const std::vector<PagePoint>& pointsOnPage(const ViewTransform& present);
    };

    using Entries = std::map<COverlayObject*, Entry>;

    void findInView(const Box& seen);

    Entries m_entries;
    std::vector<Entries::value_type*> m_inView; ///< in the order of drawing
    std::optional<Box> m_seen;                  ///< where m_inView was looked for
};

} // namespace raincast
