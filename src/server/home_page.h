// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace raincast {

class MapData;

/// The page for people: a map and a list of all sites, and the newest frames of the chosen one
/// with its layers, moving. Its links are relative and stay within the tree, so a published tree
/// has it too. Made once.
///
/// With `isSample` a line at its top says that the weather is made up.
[[nodiscard]] QByteArray homePage(const MapData& maps, bool isSample);

} // namespace raincast
