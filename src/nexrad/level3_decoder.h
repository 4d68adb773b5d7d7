// SPDX-License-Identifier: MIT
#pragma once

#include "nexrad/polar_scan.h"

#include <QByteArrayView>
#include <QString>

#include <tl/expected.hpp>
#include <vector>

namespace raincast {

/// A scan, or one sentence that names the bad field, its offset and what was found there.
using Level3Result = tl::expected<PolarScan, QString>;

/// Decodes one NEXRAD Level III product, with or without its wrapping (WMO and AWIPS headings,
/// SOH and ETX, zlib frames). The bytes may be anything. A product that holds only text has nothing
/// to show; it gives a scan without cells and with a note.
///
/// Format: docs/formats/level3.md.
[[nodiscard]] Level3Result decodeLevel3(QByteArrayView bytes);

/// The products of the tree that a scan may be published as: those that its code stands for, and
/// none if its beam is not the lowest one that the product is defined for.
[[nodiscard]] std::vector<Product> publishedAs(const PolarScan& scan);

} // namespace raincast
