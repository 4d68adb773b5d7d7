// SPDX-License-Identifier: MIT
#pragma once

#include "geo/view_transform.h"
#include "map/map_label.h"

#include <optional>
#include <vector>

class QPainter;

namespace raincast {

class GeoReference;

/// Anything that is drawn over a map. Map views hear of it through Listener<COverlayObject>, and
/// of those that existed before them through all().
class COverlayObject {
public:
    enum class Change { changed = 0, removed = 2 };

    /// The order of drawing, from the bottom up.
    enum class Layer { mark, lostPosition, position };

    COverlayObject();
    /// Announces the object as removed; only its address may be used by then.
    virtual ~COverlayObject();
    COverlayObject(const COverlayObject&) = delete;
    COverlayObject& operator=(const COverlayObject&) = delete;

    /// Replaces `outline` by the image pixels of the object's points: none when it is off the map.
    virtual void
    Layout(std::vector<ImagePixel>& outline, const GeoReference& geoReference) const = 0;

    /// Draws the object; `outline` has the points of Layout, in page pixels.
    virtual void
    Draw(QPainter& painter, const ViewTransform& view, const std::vector<PagePoint>& outline) = 0;

    /// What is written beside it in a view, if anything. A name that would overlap that of a
    /// younger object gives way: it is not written.
    [[nodiscard]] virtual std::optional<MapLabel>
    label(const ViewTransform& view, const std::vector<PagePoint>& outline) const;

    /// Where it is drawn now; another one takes effect with the next announcement.
    [[nodiscard]] virtual Layer layer() const { return Layer::mark; }

    /// The change that is being announced.
    [[nodiscard]] Change change() const { return m_change; }

    /// Makes a change known to all map views.
    void announceChanged();

    /// All objects that exist.
    [[nodiscard]] static const std::vector<COverlayObject*>& all();

private:
    Change m_change = Change::changed;
};

} // namespace raincast
