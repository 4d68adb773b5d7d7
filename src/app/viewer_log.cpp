// SPDX-License-Identifier: MIT
#include "app/viewer_log.h"

namespace raincast {

Q_LOGGING_CATEGORY(viewerLog, "raincast")

} // namespace raincast
