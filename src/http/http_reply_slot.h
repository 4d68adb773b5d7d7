// SPDX-License-Identifier: MIT
#pragma once

#include "http/http_exchange.h"

#include <atomic>
#include <mutex>
#include <optional>

namespace raincast {

/// The server's end of a reply: holds the answer until the server takes it. For server code only.
class HttpReply::Slot {
public:
    /// `wake` is called, in the answering thread, when an answer comes that the server waits for.
    explicit Slot(std::function<void()> wake) : m_wake(std::move(wake)) {}

    void send(HttpAnswer answer);

    /// The answer if it is there. If not, `wake` is called when it comes.
    [[nodiscard]] std::optional<HttpAnswer> takeOrWait();

    /// The answer is of no use any more.
    void abandon();
    [[nodiscard]] bool isWanted() const { return m_isWanted; }

private:
    std::function<void()> m_wake;
    std::atomic<bool> m_isWanted = true; ///< changes under the mutex
    std::mutex m_mutex;
    bool m_isWaiting = false;
    std::optional<HttpAnswer> m_answer;
};

} // namespace raincast
