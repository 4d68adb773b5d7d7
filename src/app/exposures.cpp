// SPDX-License-Identifier: MIT
#include "app/exposures.h"

#include "net/http_settings.h"
#include "platform/busy_guard.h"

#include <QCoreApplication>
#include <QEventLoop>

namespace raincast {

namespace {

void letThrough() {
    // Without a guard timers and sockets of ours would run in the midst of somebody's transfer.
    if (BusyGuard::active()) {
        QCoreApplication::processEvents(
            QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers
        );
    }
}

} // namespace

Exposures::Exposures() {
    httpHooks().waiting = letThrough;
}

Exposures::~Exposures() {
    httpHooks().waiting = nullptr;
}

} // namespace raincast
