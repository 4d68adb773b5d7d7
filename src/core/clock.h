// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

namespace raincast {

/// Where "now" comes from. The program uses one clock; tests put their own in its place.
class Clock {
public:
    virtual ~Clock() = default;

    /// The present UTC time, never 0.
    [[nodiscard]] virtual FileTime now() const = 0;

    /// The clock in use: the system's until another one is set.
    [[nodiscard]] static const Clock& current();

    /// Puts a clock in use for the whole program; null puts the system's back. The clock is
    /// borrowed and must outlive its use.
    static void use(const Clock* clock);
};

/// The system's clock.
class SystemClock : public Clock {
public:
    [[nodiscard]] FileTime now() const override;
};

/// A clock that stands still until it is set or advanced, for tests.
class ManualClock : public Clock {
public:
    explicit ManualClock(FileTime start) : m_now(start) {}

    [[nodiscard]] FileTime now() const override { return m_now; }
    void set(FileTime time) { m_now = time; }
    void advance(FileTime units) { m_now += units; }

private:
    FileTime m_now;
};

} // namespace raincast
