// SPDX-License-Identifier: MIT
#pragma once

#include "maps/city_file.h"
#include "maps/layer_canvas.h"

#include <functional>
#include <vector>

namespace raincast {

/// Finds places for a dot and the name of as many cities as there is room for, the first ones
/// first: a name never touches another name or a dot that has one. In the described picture there
/// are at most `most`. One of twice the detail names those of the coarser one, each on the same
/// side of its dot, and others between them, up to four times as many. What is returned draws them,
/// as often as it is called. Needs a QGuiApplication where there are cities.
[[nodiscard]] std::function<void(LayerCanvas&)>
cityDrawing(const LayerPlace& place, const std::vector<City>& cities, int most);

} // namespace raincast
