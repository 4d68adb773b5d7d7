// SPDX-License-Identifier: MIT
#include "http/http_negotiation.h"

#include <gtest/gtest.h>

#include <string>

namespace raincast {
namespace {

TEST(HttpNegotiationTest, GzipIsTakenWhereItIsWanted) {
    for (const char* header :
         {"gzip", "GZip", "gzip, deflate, br", "br;q=1.0,gzip;q=0.8", " x-gzip ", "*",
          "gzip;q=0.001", "gzip ; q=1", "br;q=0, *;q=0.5", "identity, gzip", "gzip;x=y"}) {
        EXPECT_TRUE(acceptsGzip(header)) << header;
    }
    for (const char* header :
         {"", "identity", "br", "gzip;q=0", "gzip;q=0.000", "gzip; Q=0", "*;q=0", "gzip;q=0, *",
          "gzip;q=", "gzip;q=x", "gzip;q=-1", "gzip;q", "gzips", "gzi", ",,,", ";;;", ";q=1,=,"}) {
        EXPECT_FALSE(acceptsGzip(header)) << header;
    }
}

TEST(HttpNegotiationTest, TagsAreComparedWeakly) {
    for (const char* header :
         {"\"abc\"", "W/\"abc\"", "\"x\", \"abc\"", "\"x\",W/\"abc\" ", "*", "\"x\", *"}) {
        EXPECT_TRUE(namesTag(header, "\"abc\"")) << header;
    }
    for (const char* header :
         {"", "abc", "\"ab\"", "\"abcd\"", "\"abc", "w/\"abc\"", "W/W/\"abc\"", "\"xabc\"",
          "\"\"abc\"\"", ",", "**"}) {
        EXPECT_FALSE(namesTag(header, "\"abc\"")) << header;
    }
}

TEST(HttpNegotiationTest, LongGarbageIsReadToItsEnd) {
    const std::string commas(16'000, ',');
    EXPECT_TRUE(acceptsGzip(commas + "gzip"));
    EXPECT_TRUE(namesTag(commas + "\"a\"", "\"a\""));
    EXPECT_FALSE(acceptsGzip("gzip" + std::string(16'000, ';') + "q=0"));
    EXPECT_FALSE(acceptsGzip("gzip;q=0." + std::string(16'000, '0')));
    EXPECT_FALSE(namesTag(std::string(16'000, '"'), "\"a\""));
    EXPECT_FALSE(acceptsGzip(std::string("gz\0ip\xff", 6)));
}

} // namespace
} // namespace raincast
