// SPDX-License-Identifier: MIT
#pragma once

#include "maps/map_line.h"

#include <QByteArray>

#include <vector>

namespace raincast {

/// The lines of a topology (maps/topojson.h), packed by the build: reading a topology takes fifty
/// times as long. The same numbers, to the last bit; empty where they cannot be packed so, because
/// the topology has no transform.
///
/// Format: four numbers of 8 bytes, the least significant first (latitude and longitude of a step,
/// latitude and longitude of the point that all steps begin at); then the lines. A line is a byte
/// with its rank, the number of its points, and for each of them the steps east and north from the
/// one before it, of the first from the beginning. Numbers have seven bits a byte, the least
/// significant first, and an eighth one where more come; steps below zero are odd.
[[nodiscard]] QByteArray packBorders(const QByteArray& topology, const QString& major);

/// The lines that packBorders() packed. Reading stops at the first bad byte; the lines before it
/// are returned.
[[nodiscard]] std::vector<MapLine> readBorders(const QByteArray& packed);

} // namespace raincast
