// SPDX-License-Identifier: MIT
// A thousand page files, each a good one with a few wounds; the same thousand in every run.
#include "sample_bytes.h"

#include <QBuffer>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace raincast {
namespace {

class Mutator {
public:
    explicit Mutator(std::uint32_t seed) : m_random(seed) {}

    /// Wounds a file in one to four places, none before `from`.
    Bytes wound(Bytes file, std::size_t from) {
        for (std::uint32_t wounds = 1 + below(4); wounds > 0; --wounds) {
            woundOnce(file, from);
        }
        return file;
    }

private:
    using Offset = Bytes::difference_type;

    std::uint32_t below(std::size_t limit) {
        return m_random() % static_cast<std::uint32_t>(limit);
    }

    void woundOnce(Bytes& file, std::size_t from) {
        if (file.size() <= from) {
            return;
        }
        const std::size_t place = from + below(file.size() - from);
        const std::size_t length = 1 + below(std::min<std::size_t>(file.size() - place, 60));
        const auto at = file.begin() + static_cast<Offset>(place);
        const auto end = at + static_cast<Offset>(length);
        switch (below(7)) {
        case 0:
            *at ^= static_cast<std::uint8_t>(1U << below(8));
            break;
        case 1:
            *at = static_cast<std::uint8_t>(below(256));
            break;
        case 2: {
            static const std::uint32_t kLies[] = {0,          1,          64,   0x7FFFFFFF,
                                                  0x80000000, 0xFFFFFFFE, 30,   1030,
                                                  1028,       1010,       1099, 0xFFFFFFFF};
            const auto lie = toLittleEndian(kLies[below(std::size(kLies))]);
            std::copy_n(lie.begin(), std::min<std::size_t>(4, file.size() - place), at);
            break;
        }
        case 3:
            file.erase(at, end);
            break;
        case 4: {
            const Bytes copy(at, end);
            file.insert(at, copy.begin(), copy.end());
            break;
        }
        case 5:
            file.erase(at, file.end());
            break;
        default:
            std::fill(at, end, std::uint8_t{0});
            break;
        }
    }

    std::mt19937 m_random;
};

QByteArray saved(const SampleApplication& application) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    CSerialWriter writer(file);
    EXPECT_TRUE(application.Write(writer));
    EXPECT_TRUE(writer.finish());
    return file.data();
}

/// Loads a file; what came of it must save, load again whole, and be the same.
void replay(const Bytes& file, SampleApplication& application) {
    CSerialReader reader(file);
    const bool read = application.Read(reader);
    EXPECT_EQ(read, file.size() >= 4);
    EXPECT_LE(application.pages.size(), file.size() / 8);

    const QByteArray once = saved(application);
    EXPECT_LE(once.size(), 4 + 20 * static_cast<qsizetype>(file.size()));
    SampleApplication again;
    CSerialReader savedReader(bytesOf(once));
    EXPECT_TRUE(again.Read(savedReader));
    EXPECT_TRUE(savedReader.whole());
    EXPECT_EQ(saved(again), once);
}

TEST(PageFileMutationTest, AThousandWoundedFiles) {
    Mutator mutator(20070323);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        SampleApplication application;
        replay(mutator.wound(sampleFile(), 0), application);
        EXPECT_EQ(SampleRejected::alive, 0);
    }
}

TEST(PageFileMutationTest, WhatStandsBeforeTheFirstWoundIsKept) {
    Mutator mutator(943);
    SampleApplication sample;
    fillSample(sample);
    sample.pages.pop_back();
    const QByteArray weather = saved(sample);
    for (int i = 0; i < 1000; ++i) {
        SCOPED_TRACE(i);
        SampleApplication application;
        replay(mutator.wound(sampleFile(), 4 + kWeatherPage.size()), application);
        ASSERT_FALSE(application.pages.empty());
        application.pages.resize(1);
        EXPECT_EQ(saved(application), weather);
    }
}

} // namespace
} // namespace raincast
