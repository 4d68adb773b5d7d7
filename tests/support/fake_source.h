// SPDX-License-Identifier: MIT
#pragma once

#include "core/timers.h"
#include "position/source/position_source.h"
#include "position/source/position_source_address.h"

#include <memory>
#include <string_view>
#include <utility>

namespace raincast {

/// A source that does what the test says; one at a time is open.
class FakeSource : public PositionSource {
public:
    void open(Sink& sink) override {
        ++opens;
        s_sink = &sink;
        if (breaksWhenOpened) {
            std::exchange(s_sink, nullptr)->broken(QStringLiteral("no such device"));
        }
    }
    void close() override { s_sink = nullptr; }
    ~FakeSource() override {
        ++ended;
        s_sink = nullptr;
    }

    /// Makes one, whatever the address.
    [[nodiscard]] static std::unique_ptr<PositionSource>
    make(const PositionSourceAddress& /*address*/, Timers& /*timers*/) {
        return std::make_unique<FakeSource>();
    }
    /// As at the start of a test.
    static void reset() {
        opens = 0;
        ended = 0;
        breaksWhenOpened = false;
    }

    static void send(std::string_view bytes) { s_sink->received(bytes); }
    static void breakDown() { std::exchange(s_sink, nullptr)->broken(QStringLiteral("unplugged")); }
    static bool isOpen() { return s_sink != nullptr; }

    static inline int opens = 0;
    static inline int ended = 0;
    static inline bool breaksWhenOpened = false;

private:
    static inline Sink* s_sink = nullptr;
};

} // namespace raincast
