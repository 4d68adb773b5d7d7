// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/sites.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace raincast {

/// The sites that a typed text finds by id, place and state: "mux", "san fr", "CA". Each of its
/// words must be found; letter case does not count. Those of `recent`, ids of which the latest
/// stands first, come first; then the site with that very id, those of that state, those in whose
/// name the words begin words, and the rest, each group in the table's order. None for a text
/// without words.
[[nodiscard]] std::vector<const RadarSite*>
findStations(const QString& typed, const QStringList& recent);

} // namespace raincast
