// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <algorithm>

namespace raincast {

/// How long what is tried by itself waits after a failure: 30 s, then 60 s and so on, at most five
/// minutes.
class RetryWait {
public:
    /// To be called when an update has ended.
    void ended(bool updated, FileTime now) {
        m_wait = updated ? 0 : std::clamp(2 * m_wait, kLeast, kMost);
        m_endedAt = now;
    }
    /// Whether another one may begin. A clock that was set back ends the wait.
    [[nodiscard]] bool over(FileTime now) const {
        return now < m_endedAt || now - m_endedAt >= m_wait;
    }

private:
    static constexpr FileTime kLeast = 30 * kFileTimePerSecond;
    static constexpr FileTime kMost = 300 * kFileTimePerSecond;

    FileTime m_wait = 0;
    FileTime m_endedAt = 0;
};

} // namespace raincast
