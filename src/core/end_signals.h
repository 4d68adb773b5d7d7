// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

class QSocketNotifier;

namespace raincast {

/// SIGTERM, SIGINT and SIGHUP as a request to end the program in good order. One object at a time;
/// from its construction on none of them ends the process. The requests are handled in event
/// loops, those of dialogs included; where none runs, came() tells.
class EndSignals {
public:
    EndSignals();
    /// Gives the signals their former meaning back, and forgets those that came.
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

    /// What to do in the event loop when one comes or has come. There must be an application
    /// object, which must outlive this one's use of it: an empty call ends it.
    void onEnd(std::function<void()> end);

    /// Whether one has come.
    [[nodiscard]] static bool came();

private:
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace raincast
