// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_counters.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(NmeaCountersTest, TellsWhatWasReadAndDroppedAndWhy) {
    NmeaCounters counters;
    EXPECT_EQ(counters.text(), "read 0 bytes");
    counters.bytes = 512;
    counters.taken = 6;
    counters.wrongChecksum = 1;
    EXPECT_EQ(counters.text(), "read 512 bytes: 6 taken, 1 with a wrong checksum");
    EXPECT_EQ(counters.sentences(), 7U);

    counters = {12345678, 10, 9, 1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_EQ(
        counters.text(), "read 12345678 bytes: 1 taken, 2 of other kinds, 3 proprietary, "
                         "4 encapsulated, 5 with a wrong checksum, 6 malformed, 7 too long, "
                         "8 garbled, 9 lines of JSON, 10 bytes of junk"
    );
    EXPECT_EQ(counters.sentences(), 36U) << "JSON is not one";
}

} // namespace
} // namespace raincast
