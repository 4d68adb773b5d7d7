// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/image_geometry.h"
#include "radar/catalogue/tree_index.h"

#include <QByteArray>

#include <optional>

namespace raincast {

class MapData;

/// Paints a layer of a site's map: the bytes of a JPEG for topo, of a GIF with transparent ground
/// for the others, of the geometry's size. Where the data are missing the topo is a plain ground
/// and the others have nothing on them. Nothing only when there is no memory.
///
/// A picture of more detail is painted for its size, not enlarged: its lines are as thin and its
/// letters as large in pixels, so more cities have room for their names, and small rivers for
/// themselves; relief and shores are as fine as their data.
///
/// Everything is drawn for viewers that show black where no topo is, and that take exact white for
/// transparent: lines are neither black nor white, or have a light rim; text is dark with a light
/// rim. Needs a QGuiApplication for the cities' names.
[[nodiscard]] std::optional<QByteArray>
paintLayer(LayerKind layer, const MapData& data, const ImageGeometry& geometry, Range range);

} // namespace raincast
