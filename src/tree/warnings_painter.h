// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/image_geometry.h"
#include "tree/weather_warning.h"

#include <QByteArray>

#include <optional>

namespace raincast {

/// The picture of warnings: outlines and those of holes on transparent white, the bytes of a GIF of
/// the geometry's size. The most dangerous lie over the others. What is made up is marked.
[[nodiscard]] std::optional<QByteArray>
renderWarnings(const ImageGeometry& image, const WeatherWarnings& warnings);

} // namespace raincast
