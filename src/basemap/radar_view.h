// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"
#include "radar/radar_update.h"

namespace raincast {

class GeoReference;

/// The view on the image for which updates and basemap loads run.
class RadarView : public RadarUpdateObserver {
public:
    /// The radar image's pixel under the view's centre.
    [[nodiscard]] virtual ImagePixel centrePixel() const = 0;
    /// The position under the view's centre; latitude and longitude 0 while the image is not
    /// placed.
    [[nodiscard]] virtual GeoPosition centrePosition() const = 0;
    /// Places the image on the earth. A load makes it invalid and then valid again.
    [[nodiscard]] virtual GeoReference& geoReference() = 0;
    /// The image has a new place. `centre` is where the view's centre was before; a longitude of 0
    /// means that it had no position.
    virtual void geoReferenceChanged(GeoPosition centre) = 0;
    /// Shows that the user has to wait, or that the wait is over.
    virtual void showWaiting(bool waiting) = 0;
    /// A load has replaced the layers.
    virtual void contentChanged() = 0;
};

} // namespace raincast
