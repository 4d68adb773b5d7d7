// SPDX-License-Identifier: MIT
#pragma once

#include "server/server_options.h"

#include <iosfwd>

namespace raincast {

class StopSignals;

/// The program's exit statuses.
enum class ServerExit { good = 0, failed = 1, wrongUsage = 2 };

/// Serves and publishes until SIGTERM or SIGINT, or until the parent ends if that is asked for, or
/// publishes once. Needs a QGuiApplication. When it is ready it says so in one line on `out`:
///
///     Serving sample weather at http://127.0.0.1:8155/
///
/// What goes wrong, and what map data are missing, is logged on standard error.
[[nodiscard]] ServerExit
runServer(const ServeOptions& options, StopSignals& signals, std::ostream& out);

} // namespace raincast
