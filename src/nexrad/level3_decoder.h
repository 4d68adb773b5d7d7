// SPDX-License-Identifier: MIT
#pragma once

#include "nexrad/polar_scan.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace raincast {

/// What became of a Level III product.
struct Level3Result {
    std::optional<PolarScan> scan;
    /// Without a scan: one sentence that names the field, its offset and what was found there.
    std::string error;
};

/// Decodes one NEXRAD Level III product, with or without its wrapping (WMO and AWIPS headings,
/// SOH and ETX, zlib frames). The bytes may be anything. A product that holds only text, as one
/// does that has nothing to show, gives a scan without cells and with a note.
///
/// Format: docs/formats/level3.md.
[[nodiscard]] Level3Result decodeLevel3(std::string_view bytes);

/// The products of the tree that a scan may be published as: those that its code stands for, and
/// none if its beam is not the lowest one that the product is defined for.
[[nodiscard]] std::vector<Product> publishedAs(const PolarScan& scan);

} // namespace raincast
