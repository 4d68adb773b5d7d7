// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace raincast {

class MapData;

/// The page for people: a map and a list of all sites, and the newest frames of the chosen one
/// with its layers, moving. All its links are relative and it asks for nothing but the tree, so a
/// published tree has it too. Made once.
///
/// `isSample` puts a line above it that says so.
[[nodiscard]] QByteArray homePage(const MapData& maps, bool isSample);

} // namespace raincast
