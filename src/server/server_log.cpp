// SPDX-License-Identifier: MIT
#include "server/server_log.h"

namespace raincast {

Q_LOGGING_CATEGORY(serverLog, "raincast-server")

} // namespace raincast
