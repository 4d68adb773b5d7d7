// SPDX-License-Identifier: MIT
#pragma once

#include "server/server_options.h"

#include <QByteArray>

namespace raincast {

class MapData;

/// The page for people: a map and a list of all sites, and the newest frames of the chosen one
/// with its layers, moving, how old they are, and the warnings' texts. Its links are relative and
/// stay within the tree, so a published tree has it too. Made once.
///
/// Screens of more device pixels get the pictures of detail 2, if `detail` says that the tree has
/// them; the cities' layer stays the described one, with letters that can be read.
///
/// A line at its top says where the weather is made up or of the past, and of when; that of public
/// providers is credited.
[[nodiscard]] QByteArray homePage(
    const MapData& maps, SourceKind source, const std::optional<Replay>& replay = {}, int detail = 2
);

} // namespace raincast
