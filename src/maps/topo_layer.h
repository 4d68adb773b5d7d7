// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/image_geometry.h"

#include <QImage>

namespace raincast {

class MapData;

/// Paints the ground that radar echoes are shown on: land tinted by height and shaded as if lit
/// from the north-west, water by depth, all in quiet colours that no echo has.
[[nodiscard]] QImage paintTopo(const MapData& data, const ImageGeometry& geometry);

} // namespace raincast
