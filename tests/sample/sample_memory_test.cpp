// SPDX-License-Identifier: MIT
#include "sample/sample_memory.h"
#include "sample/sample_scan.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

SampleMemory::Key keyOf(std::int64_t minute) {
    return {SampleMemory::Kind::echoes, 42, minute, minute, 230};
}

TEST(SampleMemoryTest, MakesWhatItDoesNotKnowOnce) {
    SampleMemory memory;
    int made = 0;
    const auto make = [&made] {
        ++made;
        return SampleGrid{1, 2, 3};
    };
    EXPECT_EQ(*memory.get(keyOf(7), make), (SampleGrid{1, 2, 3}));
    EXPECT_EQ(*memory.get(keyOf(7), make), (SampleGrid{1, 2, 3}));
    EXPECT_EQ(made, 1);
    EXPECT_EQ(memory.find(keyOf(8)), nullptr);
}

TEST(SampleMemoryTest, TellsKeysApartByAllTheirParts) {
    SampleMemory memory;
    const SampleMemory::Key key{SampleMemory::Kind::rainSum, 42, 10, 20, 155};
    memory.keep(key, std::make_shared<const SampleGrid>(1));
    auto other = key;
    other.kind = SampleMemory::Kind::rain;
    EXPECT_EQ(memory.find(other), nullptr);
    other = key;
    other.climate = 43;
    EXPECT_EQ(memory.find(other), nullptr);
    other = key;
    other.from = 11;
    EXPECT_EQ(memory.find(other), nullptr);
    other = key;
    other.to = 21;
    EXPECT_EQ(memory.find(other), nullptr);
    other = key;
    other.size = 156;
    EXPECT_EQ(memory.find(other), nullptr);
    EXPECT_NE(memory.find(key), nullptr);
}

TEST(SampleMemoryTest, ForgetsWhatWasUsedLeastRecently) {
    SampleMemory memory;
    const auto grid = std::make_shared<const SampleGrid>(128 * 1024); // half a megabyte
    for (int i = 0; i < 100; ++i) {
        memory.keep(keyOf(i), grid);
        static_cast<void>(memory.find(keyOf(0)));
    }
    EXPECT_NE(memory.find(keyOf(0)), nullptr);
    EXPECT_EQ(memory.find(keyOf(1)), nullptr);
    EXPECT_NE(memory.find(keyOf(99)), nullptr);
    EXPECT_LT(grid.use_count(), 10);
}

TEST(SampleMemoryTest, WhatIsKnownChangesNoPicture) {
    const AntennaPosition& antenna = *findAntenna("TLX");
    const FileTime now = fromCalendar({2026, 11, 20, 10, 30});
    SampleMemory memory;
    for (int minutes = -12; minutes <= 0; minutes += 4) {
        for (const Product product : kAllProducts) {
            const FileTime time = now + minutes * kFileTimePerMinute;
            const PolarScan scan = sampleScan(antenna, product, time, memory);
            if (minutes == 0) {
                SampleMemory empty;
                EXPECT_EQ(scan.cells, sampleScan(antenna, product, time, empty).cells)
                    << codeOf(product);
            }
        }
    }
}

} // namespace
} // namespace raincast
