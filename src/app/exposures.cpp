// SPDX-License-Identifier: MIT
#include "app/exposures.h"

#include "core/busy_guard.h"
#include "core/end_signals.h"
#include "net/http_settings.h"
#include "position/navigator/navigator_waiting.h"
#include "window/modal.h"

#include <QCoreApplication>
#include <QEventLoop>

namespace raincast {

namespace {

void letThrough() {
    // Without a guard our timers and sockets would run in the middle of a transfer.
    if (BusyGuard::active()) {
        QCoreApplication::processEvents(
            QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers
        );
    }
}

bool ending() {
    return EndSignals::came() || Modal::endRequested();
}

// A transfer ends by itself, but the navigator may be busy for any length of time.
bool letThroughUntilTheEnd() {
    letThrough();
    return !ending();
}

} // namespace

Exposures::Exposures() {
    httpHooks().waiting = letThrough;
    httpHooks().ending = ending;
    NavigatorWaiting::useHook(letThroughUntilTheEnd);
}

Exposures::~Exposures() {
    httpHooks().waiting = nullptr;
    httpHooks().ending = nullptr;
    NavigatorWaiting::useHook({});
}

} // namespace raincast
