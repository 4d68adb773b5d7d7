// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>

namespace raincast {

/// The lines of raincast-server on standard error: its log as information, errors that end it as
/// critical.
Q_DECLARE_LOGGING_CATEGORY(serverLog)

} // namespace raincast
