// SPDX-License-Identifier: MIT
#include "server/remembered_page.h"

#include <gtest/gtest.h>

namespace raincast {
namespace {

TEST(RememberedPageTest, IsMadeOnceASecond) {
    using namespace std::chrono_literals;
    int made = 0;
    RememberedPage page([&made] { return QByteArray::number(++made); });
    const RememberedPage::Time now{1h};
    EXPECT_EQ(page.get(now).bytes(), "1");
    EXPECT_EQ(page.get(now + 999ms).bytes(), "1");
    EXPECT_EQ(page.get(now + 1s).bytes(), "2");
    EXPECT_EQ(page.get(now + 1999ms).bytes(), "2");
    EXPECT_EQ(page.get(now + 1h).bytes(), "3");
}

} // namespace
} // namespace raincast
