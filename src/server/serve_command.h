// SPDX-License-Identifier: MIT
#pragma once

#include "server/server_options.h"

#include <iosfwd>

namespace raincast {

class EndSignals;

/// The exit status of raincast-server, usage errors apart.
enum class ServerExit { good = 0, failed = 1 };

/// Serves and publishes until a signal asks it to end (or, with --end-with-parent, until its parent
/// ends), or publishes once. Needs a QGuiApplication. When it is ready it prints one line on `out`:
///
///     Serving sample weather at http://127.0.0.1:8155/
///
/// Errors and missing map data go to standard error.
[[nodiscard]] ServerExit
runServer(const ServeOptions& options, EndSignals& signals, std::ostream& out);

} // namespace raincast
