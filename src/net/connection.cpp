// SPDX-License-Identifier: MIT
#include "net/connection.h"

namespace raincast {

namespace {

ConnectionManager systemManager;
ConnectionManager* managerInUse = &systemManager;

} // namespace

void ConnectionManager::use(ConnectionManager* manager) {
    managerInUse = manager != nullptr ? manager : &systemManager;
}

bool EstablishConnection() {
    return managerInUse->establish();
}

bool ReleaseConnection() {
    managerInUse->release();
    return true;
}

bool IsConnected() {
    return false;
}

} // namespace raincast
