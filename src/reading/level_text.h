// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/product.h"

#include <QString>

#include <cstddef>

namespace raincast {

/// Words for the levels of radar pictures (palette/nws_colours.h) in the user's units: dBZ; the
/// unit of speed; millimetres where distances are metric, else inches.

/// The values of a level of 0 to 15: "45 to 49 dBZ", "below 5 dBZ", "26 to 36 kts away", "range
/// folded", "up to 2.5 mm", "8 in or more".
[[nodiscard]] QString levelText(Product product, std::size_t level);

/// What the scale writes at a level of 1 to 15: the value where it begins, for velocity towards the
/// radar the one that is near to calm, "RF" for range folded.
[[nodiscard]] QString levelLabel(Product product, std::size_t level);

/// "dBZ", "kts", "in".
[[nodiscard]] QString levelUnit(Quantity quantity);

/// Whether the user's distances are metric.
[[nodiscard]] bool metricDistances();

} // namespace raincast
