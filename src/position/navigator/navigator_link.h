// SPDX-License-Identifier: MIT
#pragma once

#include "position/navigator/navigator_port.h"
#include "position/navigator/navigator_status.h"

#include <QString>

namespace raincast {

/// A link to the companion navigator (docs/formats/navigator.md). The viewer owns one and lends it
/// to the feed. See CQV_transaction for an exchange over it. User-interface thread only.
struct NavigatorLink {
    static constexpr int kLongestPath = 260; ///< UTF-16 units

    std::unique_ptr<NavigatorPort::Mutex> mutex;   ///< null while not linked
    std::unique_ptr<NavigatorPort::Window> window; ///< null while not linked
    QString file;                                  ///< the shared file's path; empty until found
};

/// Links with the navigator and ends an earlier link first. With `launch`, starts a navigator that
/// does not run, by its registered command, and waits up to 10 seconds for its window.
/// kNavigatorNoFolder leaves a link without a shared file.
[[nodiscard]] NavigatorStatus ConnectNavigator(NavigatorLink& link, bool launch);

/// Forgets the window and the mutex; with `close`, asks the navigator to end first. Always
/// succeeds.
NavigatorStatus DisconnectNavigator(NavigatorLink& link, bool close);

} // namespace raincast
