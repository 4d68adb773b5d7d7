// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// Sends what the programs log to standard error, wherever it may lead. Each program has a logging
/// category of its own name, "raincast-server" for example: its lines begin with that name
/// ("raincast-server: Cannot listen at ..."), except that information is printed as it is. All
/// other categories, Qt's own above all, keep their handler.
///
/// Call it once, before anything is logged.
void logToStandardError();

} // namespace raincast
