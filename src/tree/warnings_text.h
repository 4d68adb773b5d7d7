// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/image_geometry.h"
#include "tree/weather_warning.h"

#include <QByteArray>

namespace raincast {

/// Whether a part of a warning lies in a picture, as far as its corners' box tells.
[[nodiscard]] bool reachesInto(const ImageGeometry& image, const WeatherWarning& warning);

/// The warnings that reach into a picture as JSON, the most dangerous first. Format:
/// docs/formats/warnings.md.
[[nodiscard]] QByteArray warningsText(const ImageGeometry& image, const WeatherWarnings& warnings);

} // namespace raincast
