// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "radar/catalogue/closed_sites.h"
#include "radar/catalogue/product.h"

#include <string>
#include <string_view>
#include <vector>

namespace raincast {

/// Where a provider has a product of the tree: the names of its own products, to be tried in turn.
/// A site makes one of them or several, and not the same ones every day.
using LiveChoices = std::vector<std::string>;

/// In the bucket: {"N0B", "N0Q", "N0R"} for N0R.
[[nodiscard]] const LiveChoices& bucketChoices(Product product);

/// In the folders of the ring: {"p94r0"} for N0R.
[[nodiscard]] const LiveChoices& ringChoices(Product product);

/// The name of a site's folder in the ring, "ktlx" for TLX.
[[nodiscard]] std::string ringSite(std::string_view site);

/// The id that a site's products have at a time: its own, or that of the radar that follows it.
[[nodiscard]] std::string_view radarOf(std::string_view site, FileTime time);

} // namespace raincast
