// SPDX-License-Identifier: MIT
#pragma once

#include "geo/view_transform.h"
#include "map/overlay_object.h"

#include <QFont>
#include <QHash>
#include <QImage>
#include <QRect>
#include <QVarLengthArray>

#include <cstdint>
#include <optional>
#include <vector>

class QPainter;

namespace raincast {

class GeoReference;
struct PageRectangle;

/// The overlays of one map view and where the points of each lie in the image.
///
/// There may be a hundred thousand marks. Of those whose spots are a pixel or two apart the
/// youngest is drawn, and a name that would overlap a younger mark's is left out. More than a few
/// in view are one picture, which is kept until they or the view change: a loop that plays below
/// them draws that.
class MapOverlays {
public:
    /// Lays out an overlay that is new or has changed. On an image that is not placed it is
    /// forgotten.
    void layout(COverlayObject& object, const GeoReference& geoReference);
    /// Forgets what it knows, and lays out every overlay that exists.
    void layoutAll(const GeoReference& geoReference);
    void forget(COverlayObject& object);

    /// The part of the page that drawing an object may change; empty while it is not drawn. Nothing
    /// for a mark: its name may make others give way anywhere.
    [[nodiscard]] std::optional<QRect>
    extent(const COverlayObject& object, const ViewTransform& view) const;

    /// Draws those that come within 50 image pixels of a rectangle of the page, layer by layer
    /// (COverlayObject::layer), in each the oldest first.
    void draw(QPainter& painter, const ViewTransform& view, const PageRectangle& area);

private:
    struct Entry {
        COverlayObject* object = nullptr; ///< null once it is forgotten
        COverlayObject::Layer layer = COverlayObject::Layer::mark;
        QVarLengthArray<ImagePixel, 2> points{};
    };

    /// Image pixels, all four edges within. Wide enough for a margin around any pixel.
    struct Box {
        std::int64_t left;
        std::int64_t top;
        std::int64_t right;
        std::int64_t bottom;

        friend bool operator==(const Box&, const Box&) = default;
        [[nodiscard]] bool meets(const Entry& entry) const;
        [[nodiscard]] static Box seenIn(const PageRectangle& area, const ViewTransform& view);
    };

    /// What the picture of the marks depends on, but for them.
    struct Sight {
        ViewTransform view;
        QRect area;
        int dotsPerInch;
        QFont font;

        friend bool operator==(const Sight&, const Sight&) = default;
    };

    Entry& entryOf(COverlayObject& object);
    void dropForgotten();
    void changed(const Entry& entry);
    void findInView(const Box& seen);
    void drawMarks(QPainter& painter, const Sight& sight);
    void drawMarksAnew(QPainter& painter, const Sight& sight);
    [[nodiscard]] QImage pictureOfMarks(const Sight& sight);
    [[nodiscard]] const std::vector<PagePoint>&
    onPage(const Entry& entry, const ViewTransform& view);

    std::vector<Entry> m_entries;                       ///< the oldest first
    QHash<const COverlayObject*, std::size_t> m_places; ///< in m_entries
    std::vector<ImagePixel> m_layout;                   ///< while one is laid out
    std::vector<PagePoint> m_onPage;                    ///< while one is drawn

    std::optional<Box> m_seen;         ///< where the next two were looked for
    std::vector<std::size_t> m_marks;  ///< places in m_entries, the oldest first
    std::vector<std::size_t> m_others; ///< in the order of drawing

    std::optional<Sight> m_sight; ///< of the next
    QImage m_picture;             ///< of the marks
};

} // namespace raincast
