// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

class QSocketNotifier;

namespace raincast {

/// SIGTERM and SIGINT, as calls in the event loop instead of interruptions. For one object at a
/// time, made before any thread is started: threads inherit that these signals wait.
class StopSignals {
public:
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    /// From now on the end of the thread that started this process is a SIGTERM too, even when it
    /// is killed.
    static void endWithParent();

    /// What to do when one comes, or has come already.
    void onStop(std::function<void()> stop);

private:
    int m_fd;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace raincast
