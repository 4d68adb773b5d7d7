// SPDX-License-Identifier: MIT
#include "net/connection.h"
#include "support/scoped_http.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(ConnectionTest, TheSystemsConnectionIsTakenToBeUp) {
    EXPECT_TRUE(EstablishConnection());
    EXPECT_TRUE(ReleaseConnection());
    EXPECT_TRUE(ReleaseConnection());
    EXPECT_FALSE(IsConnected());
}

TEST(ConnectionTest, AnotherManagerIsAskedWhileItIsInUse) {
    {
        CountingConnectionManager manager(false);
        EXPECT_FALSE(EstablishConnection());
        EXPECT_FALSE(IsConnected());
        EXPECT_TRUE(ReleaseConnection());
        EXPECT_EQ(manager.established, 1);
        EXPECT_EQ(manager.released, 1);
    }
    EXPECT_TRUE(EstablishConnection());
    EXPECT_FALSE(IsConnected());
}

} // namespace
} // namespace raincast
