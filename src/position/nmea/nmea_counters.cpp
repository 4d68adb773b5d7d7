// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_counters.h"

namespace raincast {

namespace {

struct Row {
    std::uint64_t NmeaCounters::*count;
    const char* label;
};

constexpr Row kSentenceRows[] = {
    {&NmeaCounters::taken, " taken"},
    {&NmeaCounters::otherKinds, " of other kinds"},
    {&NmeaCounters::proprietary, " proprietary"},
    {&NmeaCounters::encapsulated, " encapsulated"},
    {&NmeaCounters::wrongChecksum, " with a wrong checksum"},
    {&NmeaCounters::malformed, " malformed"},
    {&NmeaCounters::tooLong, " too long"},
    {&NmeaCounters::garbled, " garbled"},
};
constexpr Row kOtherRows[] = {
    {&NmeaCounters::jsonLines, " lines of JSON"},
    {&NmeaCounters::junkBytes, " bytes of junk"},
};

} // namespace

std::uint64_t NmeaCounters::sentences() const {
    std::uint64_t sum = 0;
    for (const Row& row : kSentenceRows) {
        sum += this->*row.count;
    }
    return sum;
}

std::string NmeaCounters::text() const {
    std::string text = "read " + std::to_string(bytes) + " bytes";
    const char* separator = ": ";
    const auto append = [&](const Row& row) {
        if (this->*row.count != 0) {
            text += separator + std::to_string(this->*row.count) + row.label;
            separator = ", ";
        }
    };
    for (const Row& row : kSentenceRows) {
        append(row);
    }
    for (const Row& row : kOtherRows) {
        append(row);
    }
    return text;
}

} // namespace raincast
