// SPDX-License-Identifier: MIT
#pragma once

#include "maps/city_file.h"
#include "maps/layer_canvas.h"

#include <vector>

namespace raincast {

/// Draws a dot and the name of as many cities as there is room for, the first ones first: a name
/// never touches another name or a dot that has one. Needs a QGuiApplication.
void drawCities(LayerCanvas& canvas, const std::vector<City>& cities, int most);

} // namespace raincast
