// SPDX-License-Identifier: MIT
#pragma once

#include "net/http_settings.h"

#include <atomic>

namespace raincast {

/// How many bytes of files one action of the user may still fetch, from all servers together. May
/// be used from any thread.
class ByteAllowance {
public:
    /// As many as httpLimits() allow for an action.
    ByteAllowance() : m_left(httpLimits().actionBytes) {}

    void take(qint64 bytes) { m_left -= bytes; }
    [[nodiscard]] bool usedUp() const { return m_left <= 0; }

private:
    std::atomic<qint64> m_left;
};

} // namespace raincast
