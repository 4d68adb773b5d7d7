// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "server/tree_server.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace raincast {

class FrameSource;
class MapData;

/// The state of a running server.
struct ServerStatus {
    QString source; ///< "sample" or "level3"
    FileTime started = 0;
    std::optional<TreeServer::Counts> counts; ///< nothing if it does not listen
    qsizetype bytesInMemory = 0;
};

/// The status as JSON: the source, the map data, the numbers of requests and each site's newest
/// frame. Times are UTC, as in "2018-07-25T19:24:00Z".
[[nodiscard]] QByteArray
statusPage(const ServerStatus& status, const FrameSource& frames, const MapData& maps);

} // namespace raincast
