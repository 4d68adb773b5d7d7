// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

class QSocketNotifier;

namespace raincast {

/// SIGTERM, SIGINT and SIGHUP as a request to end the program in good order. One object at a time;
/// while it lives none of them ends the process. Event loops handle the requests, those of dialogs
/// included; where none runs, ask came().
class EndSignals {
public:
    EndSignals();
    /// Restores the signals' former meaning and forgets those that came.
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

    /// Calls `end` in the event loop when a signal comes or has come. Needs an application object;
    /// take the call back with an empty one before that object goes.
    void onEnd(std::function<void()> end);

    /// Whether a signal has come.
    [[nodiscard]] static bool came();

    /// From now on the end of the thread that started this process is a SIGTERM too, even if that
    /// thread was killed.
    static void endWithParent();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace raincast
