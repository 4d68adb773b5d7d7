// SPDX-License-Identifier: MIT
#pragma once

#include "position/navigator/navigator_port.h"
#include "position/navigator/navigator_status.h"

#include <QString>

namespace raincast {

/// The program's one link to the companion navigator (docs/formats/navigator.md): the navigator's
/// main window, the mutex that its clients share, and the path of the file through which parameters
/// and results go. All operations are for the user-interface thread. See CQV_transaction for one
/// exchange over it.

/// Links with the navigator, after unlinking if there was a link. If it does not run it is started
/// when `launch` says so, by the command that it has registered, and waited for up to 10 seconds.
/// kNavigatorNoFolder leaves a link without a shared file.
[[nodiscard]] NavigatorStatus ConnectNavigator(bool launch);

/// Forgets window and mutex; with `close` the navigator is asked to end first. Always success.
NavigatorStatus DisconnectNavigator(bool close);

/// What the link consists of, for those who use it.
struct NavigatorLink {
    static constexpr int kLongestPath = 260; ///< UTF-16 units

    std::unique_ptr<NavigatorPort::Mutex> mutex;   ///< null while not linked
    std::unique_ptr<NavigatorPort::Window> window; ///< null while not linked
    QString file;                                  ///< the shared file's path; empty until found

    [[nodiscard]] static NavigatorLink& program();
};

} // namespace raincast
