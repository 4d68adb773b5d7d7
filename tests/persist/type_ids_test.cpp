// SPDX-License-Identifier: MIT
#include "persist/type_ids.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

// They are in users' files: a line of this test is never changed either.
TEST(TypeIdsTest, AreThoseOfUsersFiles) {
    EXPECT_EQ(kTypeSerializableList, 0U);
    EXPECT_EQ(kTypePageDisplay, 10U);
    EXPECT_EQ(kTypeOverlayMark, 20U);
    EXPECT_EQ(kTypeMarkManager, 21U);
    EXPECT_EQ(kTypeImage, 28U);
    EXPECT_EQ(kTypeItemWeather, 30U);
    EXPECT_EQ(kTypeNone, 0xFFFFFFFFU);
}

} // namespace
} // namespace raincast
