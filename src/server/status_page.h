// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "core/replay_clock.h"
#include "live/live_source.h"
#include "server/server_options.h"
#include "server/tree_server.h"

#include <QByteArray>

#include <optional>

namespace raincast {

class FrameSource;
class MapData;

/// The state of a running server.
struct ServerStatus {
    SourceKind source = SourceKind::sample;
    FileTime started = 0;
    std::optional<TreeServer::Counts> counts; ///< nothing if it does not listen
    qsizetype bytesInMemory = 0;
    std::optional<LiveStatus> live{}; ///< of live weather
    std::optional<ReplayClock> replay{};
    bool isSourceReady = true; ///< see FrameSource::isReady()
    bool isEnding = false;
};

/// "sample", "level3", "live"
[[nodiscard]] QString wordOf(SourceKind kind);

/// The status as JSON: the source, the map data, the numbers of requests and each site's newest
/// frame; of live weather also the providers, what is wanted, and whether any can be reached; of a
/// replay its begin, its speed and the instant of the world at which it started. Times
/// are UTC, as in "2018-07-25T19:24:00Z".
[[nodiscard]] QByteArray
statusPage(const ServerStatus& status, const FrameSource& frames, const MapData& maps);

} // namespace raincast
