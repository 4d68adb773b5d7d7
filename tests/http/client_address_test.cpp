// SPDX-License-Identifier: MIT
#include "http/client_address.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

std::string client(const char* text) {
    sockaddr_storage storage{};
    auto* const four = reinterpret_cast<sockaddr_in*>(&storage);
    auto* const six = reinterpret_cast<sockaddr_in6*>(&storage);
    if (inet_pton(AF_INET, text, &four->sin_addr) == 1) {
        four->sin_family = AF_INET;
    } else {
        EXPECT_EQ(inet_pton(AF_INET6, text, &six->sin6_addr), 1) << text;
        six->sin6_family = AF_INET6;
    }
    return clientAt(storage);
}

TEST(ClientAddressTest, EachAddressOfVersion4IsAClient) {
    EXPECT_EQ(client("192.0.2.1"), client("192.0.2.1"));
    EXPECT_NE(client("192.0.2.1"), client("192.0.2.2"));
    EXPECT_EQ(client("::ffff:192.0.2.1"), client("192.0.2.1"));
    EXPECT_NE(client("::ffff:192.0.2.1"), client("::ffff:192.0.2.2"));
}

TEST(ClientAddressTest, AClientHasAWholeNetworkOfVersion6) {
    EXPECT_EQ(client("2001:db8:1:2::3"), client("2001:db8:1:2:ffff:ffff:ffff:ffff"));
    EXPECT_NE(client("2001:db8:1:2::3"), client("2001:db8:1:3::3"));
    EXPECT_EQ(client("::1"), client("::1"));
    EXPECT_NE(client("2001:db8::"), client("0.0.0.0"));
}

TEST(ClientAddressTest, NeighboursOnOneWireAreClientsOfTheirOwn) {
    EXPECT_NE(client("fe80::1"), client("fe80::2"));
    EXPECT_EQ(client("fe80::1"), client("fe80::1"));
}

} // namespace
} // namespace raincast
