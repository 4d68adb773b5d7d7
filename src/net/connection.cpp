// SPDX-License-Identifier: MIT
#include "net/connection.h"

namespace raincast {

ConnectionManager& ConnectionManager::ofTheSystem() {
    static ConnectionManager manager;
    return manager;
}

} // namespace raincast
