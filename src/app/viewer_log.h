// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>

namespace raincast {

/// The lines of the viewer on standard error.
Q_DECLARE_LOGGING_CATEGORY(viewerLog)

} // namespace raincast
