// SPDX-License-Identifier: MIT
// The status of a server that the viewer has started: whatever it says, the replay's clock shows a
// time between the replay's begin and now.
#include "watch/status_answer.h"

#include "core/replay_clock.h"
#include "input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    static const ManualClock world(fromCalendar({2026, 11, 21, 17, 52}));
    Clock::use(&world);
    const QByteArray status = Input(data, size).rest();
    static_cast<void>(saysUnreachable(status));
    if (const auto start = replayStartIn(status)) {
        const Replay replay{fromCalendar({2021, 12, 11, 2, 0}), Replay::kMostSpeed};
        const ReplayClock clock(replay, *start);
        const FileTime now = clock.now();
        require(replay.begin <= now && now <= world.now());
        require(clock.until(now + kFileTimePerMinute) > 0);
    }
    return 0;
}
