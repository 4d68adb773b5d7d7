// SPDX-License-Identifier: MIT
#include "gps/nmea_counters.h"
#include "gps/nmea_framer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class NmeaFramerTest : public testing::Test {
protected:
    std::vector<std::string> feed(std::string_view input) {
        std::vector<std::string> sentences;
        while (const auto sentence = framer.next(input)) {
            sentences.emplace_back(*sentence);
        }
        EXPECT_TRUE(input.empty());
        return sentences;
    }

    NmeaCounters counters;
    NmeaFramer framer{counters};
};

TEST_F(NmeaFramerTest, TakesSentencesWithAnyLineEnd) {
    EXPECT_THAT(feed("$A,1\r\n$B\n!C\r$D\n\r\n"), ElementsAre("$A,1", "$B", "!C", "$D"));
    EXPECT_EQ(counters.junkBytes, 0U);
}

TEST_F(NmeaFramerTest, TakesOneSentenceOverManyReads) {
    EXPECT_THAT(feed(""), IsEmpty());
    EXPECT_THAT(feed("$GPR"), IsEmpty());
    EXPECT_THAT(feed(""), IsEmpty());
    EXPECT_THAT(feed("MC,12"), IsEmpty());
    EXPECT_THAT(feed("3\r"), ElementsAre("$GPRMC,123"));
    EXPECT_THAT(feed("\n$"), IsEmpty());
    EXPECT_THAT(feed("B\n"), ElementsAre("$B"));
}

TEST_F(NmeaFramerTest, SkipsWhatIsBetweenSentences) {
    using namespace std::string_view_literals;
    EXPECT_THAT(
        feed("# text\n\xb5\x62\x00\x01\xff$A\r\n\xb5\x62\x00\x01\xff\n"sv), ElementsAre("$A")
    );
    EXPECT_EQ(counters.junkBytes, 6U + 5U + 5U);
    EXPECT_EQ(counters.garbled, 0U);
}

TEST_F(NmeaFramerTest, AStartWithinASentenceBeginsAnother) {
    EXPECT_THAT(feed("$GPRMC,12$GPGGA,1\n$A!B\n$$$C\n"), ElementsAre("$GPGGA,1", "!B", "$C"));
    EXPECT_EQ(counters.garbled, 4U);
}

TEST_F(NmeaFramerTest, BytesThatAreNotTextDropTheSentence) {
    for (const char c : {'\0', '\t', '\x1f', '\x7f', '\x80', '\xff'}) {
        counters = {};
        const std::string input = std::string("$GPRMC,") + c + "1\r\n$B\r\n";
        EXPECT_THAT(feed(input), ElementsAre("$B")) << static_cast<int>(c);
        EXPECT_EQ(counters.garbled, 1U);
        EXPECT_EQ(counters.junkBytes, 2U) << "the byte and what follows it";
    }
}

TEST_F(NmeaFramerTest, TheLongestSentenceHas256Characters) {
    const std::string longest = "$" + std::string(255, 'x');
    EXPECT_THAT(feed(longest + "\n"), ElementsAre(longest));
    EXPECT_THAT(feed(longest + "x\n$A\n"), ElementsAre("$A"));
    EXPECT_EQ(counters.tooLong, 1U);

    // The same in pieces: dropped as soon as it is too long, and the rest of it is junk.
    EXPECT_THAT(feed(longest), IsEmpty());
    EXPECT_THAT(feed("x"), IsEmpty());
    EXPECT_THAT(feed("yz\n$A\n"), ElementsAre("$A"));
    EXPECT_EQ(counters.tooLong, 2U);
    EXPECT_EQ(counters.junkBytes, 2U);
}

TEST_F(NmeaFramerTest, EndlessTextIsDropped) {
    for (int i = 0; i < 10000; ++i) {
        EXPECT_THAT(feed("$xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx"), IsEmpty());
        EXPECT_THAT(feed(std::string(500, 'y')), IsEmpty());
    }
    EXPECT_EQ(counters.tooLong, 10000U);
}

TEST_F(NmeaFramerTest, ResetDropsTheBeginningOfASentence) {
    EXPECT_THAT(feed("$GPRMC,1"), IsEmpty());
    framer.reset();
    EXPECT_EQ(counters.garbled, 1U);
    EXPECT_THAT(feed("2\n$A\n"), ElementsAre("$A"));
    framer.reset();
    EXPECT_EQ(counters.garbled, 1U) << "nothing was begun";
}

} // namespace
} // namespace raincast
