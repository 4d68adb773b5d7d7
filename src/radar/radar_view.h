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
    /// What places the image on the earth. A load takes its validity away and gives it back.
    [[nodiscard]] virtual GeoReference& geoReference() = 0;
    /// The image is placed anew. `centre` is where the view's centre was before; a longitude of 0
    /// means that it was nowhere.
    virtual void geoReferenceChanged(GeoPosition centre) = 0;
    /// Shows or hides that the user has to wait.
    virtual void showWaiting(bool waiting) = 0;
    /// A load has put other layers in place.
    virtual void contentChanged() = 0;
};

} // namespace raincast
