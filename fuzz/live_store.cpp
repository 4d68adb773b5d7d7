// SPDX-License-Identifier: MIT
// The folder in which providers' products are kept, by whatever version of the program, or anybody:
// a name a line. What is listed is there, and nothing outside of the folder is touched.
#include "live/live_store.h"

#include "core/clock.h"
#include "scratch_folder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    static const ScratchFolder folder;
    static const ManualClock clock(fromCalendar({2026, 11, 21, 17, 52}));
    Clock::use(&clock);
    Input input(data, size);
    const int hours = 1 + input.byte() % 48;
    folder.clear();
    for (const QString& name : input.lines()) {
        folder.put(name, name.toUtf8());
    }
    LiveStore store(folder.path(), hours, ServerLog([](const QString& /*line*/) {}));
    for (const LiveObject& object : store.load()) {
        require(object.time >= store.horizon() && store.has(object));
        static_cast<void>(store.read(object));
        LiveObject again = object;
        again.body = "again";
        store.keep(again);
        require(store.has(again) && store.read(again) == "again");
        store.drop(again);
        require(!store.has(again));
    }
    store.clean();
    require(folder.isBesideThere());
    return 0;
}
