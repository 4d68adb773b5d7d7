// SPDX-License-Identifier: MIT
#pragma once

#include "core/clock.h"

#include <QFile>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>

namespace raincast::test {

/// The wall clock of programs that are started with it (tests/shifted_clock), which jumps when a
/// test says so.
class JumpingClock {
public:
    explicit JumpingClock(std::int64_t seconds = 0) { jumpTo(seconds); }

    /// To so many seconds ahead of this machine's.
    void jumpTo(std::int64_t seconds) {
        // In place and at once: others have it in their memory.
        const int file = open(qPrintable(name()), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
        EXPECT_EQ(pwrite(file, &seconds, sizeof seconds, 0), ssize_t{sizeof seconds});
        close(file);
        m_seconds = seconds;
    }
    /// To a time.
    void jumpTo1970() {
        jumpTo(-static_cast<std::int64_t>(toUnixSeconds(SystemClock().now())) + 600);
    }
    void advance(std::int64_t seconds) { jumpTo(m_seconds + seconds); }

    void addTo(QProcessEnvironment& environment, const QString& library) const {
        environment.insert("LD_PRELOAD", library);
        environment.insert("CLOCK_FILE", name());
        // The library need not come first.
        environment.insert("ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0");
    }

private:
    [[nodiscard]] QString name() const { return m_folder.filePath("clock"); }

    QTemporaryDir m_folder;
    std::int64_t m_seconds = 0;
};

} // namespace raincast::test
