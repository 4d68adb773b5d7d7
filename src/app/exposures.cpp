// SPDX-License-Identifier: MIT
#include "app/exposures.h"

#include "core/busy_guard.h"
#include "core/end_signals.h"
#include "position/navigator/navigator_waiting.h"
#include "window/modal.h"

#include <QCoreApplication>
#include <QEventLoop>

namespace raincast {

namespace {

void letThrough() {
    // Without a guard our timers and sockets would run in the middle of the wait.
    if (BusyGuard::active()) {
        QCoreApplication::processEvents(
            QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers
        );
    }
}

bool ending() {
    return EndSignals::came() || Modal::endRequested();
}

// The navigator may be busy for any length of time.
bool letThroughUntilTheEnd() {
    letThrough();
    return !ending();
}

} // namespace

Exposures::Exposures() {
    NavigatorWaiting::useHook(letThroughUntilTheEnd);
}

Exposures::~Exposures() {
    NavigatorWaiting::useHook({});
}

} // namespace raincast
