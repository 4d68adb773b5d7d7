// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_counters.h"
#include "position/nmea/nmea_framer.h"

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

// gpsd's greeting and reports, which may be much longer than a sentence.
TEST_F(NmeaFramerTest, LinesOfJsonAreNoJunk) {
    EXPECT_THAT(
        feed("{\"class\":\"VERSION\",\"rev\":\"$3.22!\"}\r\n$A\r\n{\"class\":\"SKY\"}\n$B\n"),
        ElementsAre("$A", "$B")
    );
    EXPECT_EQ(counters.jsonLines, 2U);
    const std::string satellites(10'000, 's');
    EXPECT_THAT(feed("{\"satellites\":\"" + satellites + "\"}\r\n$C\n"), ElementsAre("$C"));
    EXPECT_EQ(counters.jsonLines, 3U);
    EXPECT_EQ(counters.junkBytes, 0U);
    EXPECT_EQ(counters.sentences(), 0U) << "it is not for the framer to count those that are well";
}

TEST_F(NmeaFramerTest, ALineOfJsonMayComeInPieces) {
    const std::string line = "{\"class\":\"ERROR\",\"message\":\"no \\\"$X\\\", \\$Y\"}\r\n$A\n";
    for (std::size_t cut = 1; cut < line.size() - 1; ++cut) {
        counters = {};
        auto sentences = feed(line.substr(0, cut));
        const auto more = feed(line.substr(cut));
        sentences.insert(sentences.end(), more.begin(), more.end());
        EXPECT_THAT(sentences, ElementsAre("$A")) << cut;
        EXPECT_EQ(counters.jsonLines, 1U) << cut;
        EXPECT_EQ(counters.junkBytes, 0U) << cut;
    }
}

TEST_F(NmeaFramerTest, WhatOnlyLooksLikeJsonIsJunk) {
    const struct {
        const char* bytes;
        unsigned junk;
    } rows[] = {{"{$A\n", 1},      {"{\r\n$A\n", 1}, {"{x\"\n$A\n", 3}, {"x{\"a\":1}\n$A\n", 8},
                {" {\"\n$A\n", 3}, {"{{\"\n$A\n", 3}};
    for (const auto& row : rows) {
        counters = {};
        EXPECT_THAT(feed(row.bytes), ElementsAre("$A")) << row.bytes;
        EXPECT_EQ(counters.jsonLines, 0U) << row.bytes;
        EXPECT_EQ(counters.junkBytes, row.junk) << row.bytes;
    }
}

TEST_F(NmeaFramerTest, AStartOutsideOfAStringEndsALineOfJsonThatWasCut) {
    EXPECT_THAT(feed("{\"class\":$A\n{\"class\":\"x\"}$B\n"), ElementsAre("$A", "$B"));
    EXPECT_EQ(counters.jsonLines, 2U);
    EXPECT_EQ(counters.junkBytes, 0U);
    // Within one it cannot be told: the line end helps.
    EXPECT_THAT(feed("{\"class$A\n$B\n"), ElementsAre("$B"));
    EXPECT_THAT(feed("{\"class"), IsEmpty());
    framer.reset();
    EXPECT_THAT(feed("$A\n"), ElementsAre("$A")) << "a new connection";
    EXPECT_EQ(counters.jsonLines, 4U);
    EXPECT_EQ(counters.garbled, 0U) << "no sentence";
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
