// SPDX-License-Identifier: MIT
#pragma once

#include "core/clock.h"

namespace raincast {

/// A manual clock that is the program's for as long as it lives.
class TestClock : public ManualClock {
public:
    explicit TestClock(FileTime start = fromCalendar({2007, 6, 15, 18, 30})) : ManualClock(start) {
        Clock::use(this);
    }
    ~TestClock() override { Clock::use(nullptr); }
    TestClock(const TestClock&) = delete;
    TestClock& operator=(const TestClock&) = delete;
};

} // namespace raincast
