// SPDX-License-Identifier: MIT
#include "net/connection.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(ConnectionTest, TheSystemsConnectionIsTakenToBeUp) {
    ConnectionManager& system = ConnectionManager::ofTheSystem();
    bool up = false;
    system.EstablishConnection("radar.example", [&up](bool given) { up = given; });
    EXPECT_TRUE(up);
    EXPECT_EQ(system.addressOf("radar.example"), "radar.example");
    EXPECT_TRUE(system.ReleaseConnection());
    EXPECT_TRUE(system.ReleaseConnection());
    EXPECT_FALSE(system.IsConnected());
}

} // namespace
} // namespace raincast
