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
    ByteAllowance() : m_all(httpLimits().actionBytes), m_left(m_all) {}

    void take(qint64 bytes) { m_left -= bytes; }
    [[nodiscard]] bool usedUp() const { return m_left <= 0; }
    [[nodiscard]] qint64 taken() const { return m_all - m_left; }

private:
    const qint64 m_all;
    std::atomic<qint64> m_left;
};

} // namespace raincast
