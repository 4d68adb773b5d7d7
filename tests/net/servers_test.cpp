// SPDX-License-Identifier: MIT
#include "net/servers.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(ServersTest, AServerIsAHostAndIfNeedBeAPort) {
    for (const char* text :
         {"radar.example", "radar.example.", "127.0.0.1:8155", "[::1]:80", "[::1]", "a-b_c",
          "localhost:1", "localhost:65535"}) {
        EXPECT_TRUE(isServer(text)) << text;
    }
    EXPECT_TRUE(isServer(QString::fromUtf16(kLocalServer)));
}

TEST(ServersTest, AnythingElseIsNone) {
    for (const char* text :
         {"",
          " ",
          ":80",
          ":",
          "radar.example:",
          "radar.example:0",
          "radar.example:65536",
          "radar.example:123456",
          "radar.example:99999999999",
          "radar.example:+80",
          "radar.example:-1",
          "radar.example:80:80",
          "radar.example:eighty",
          "radar.example: 80",
          "a b",
          "a/b",
          "http://radar.example",
          "radar.example/ridge",
          "user@host",
          "a\nb",
          "radar.example\n",
          "radar.example:80\n",
          "::1",
          "[]",
          "[::1",
          "[::1]80",
          "-x",
          ".",
          "..",
          "ra\xC3\xA4"
          "dar"}) {
        EXPECT_FALSE(isServer(QString::fromUtf8(text))) << text;
    }
}

} // namespace
} // namespace raincast
