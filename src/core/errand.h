// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <functional>
#include <thread>

namespace raincast {

/// A piece of work in a thread of its own that always comes to its end. It belongs to the thread
/// that starts it; `done` is called from that one's event loop.
class Errand {
public:
    Errand() = default;
    /// Waits for the work. `done` is not called.
    ~Errand();
    Errand(const Errand&) = delete;
    Errand& operator=(const Errand&) = delete;

    /// Starts `work`; then `done` is called, once, from the event loop or from wait(). What the two
    /// share must be used by nothing else meanwhile. Not while one is under way.
    void start(std::function<void()> work, std::function<void()> done);

    [[nodiscard]] bool underWay() const { return m_thread.joinable(); }

    /// Waits for the work, if some is under way, and calls `done` before it returns.
    void wait();

private:
    QObject m_home; // calls for it come to the thread that made it, and none once it is gone
    std::thread m_thread;
    std::function<void()> m_done;
    unsigned m_number = 0;
};

} // namespace raincast
