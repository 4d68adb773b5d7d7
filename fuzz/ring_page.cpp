// SPDX-License-Identifier: MIT
// The page that lists a ring of files: whatever the bytes, what is found is a file's name, in order
// and none twice.
#include "provider/ring_page.h"

#include <cstdlib>
#include <set>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    const FileTime now = fromCalendar({2026, 11, 21, 17, 52});
    std::set<QByteArray> names;
    FileTime last = now + 100 * 365 * 24 * 60 * kFileTimePerMinute * 100;
    for (const RingEntry& entry : readRingPage(bytes, now)) {
        if (entry.name.size() != 7 || !names.insert(entry.name).second || entry.modified > last) {
            std::abort();
        }
        last = entry.modified;
    }
    return 0;
}
