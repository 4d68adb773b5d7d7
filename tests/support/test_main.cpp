// SPDX-License-Identifier: MIT
// The main function of every test program: sets the process's locale from the environment, as Qt's
// start-up does in the programs, so that the entries run under a comma locale find what reads or
// writes numbers by the user's locale where it must not. Says by its exit status when a test was
// skipped and none failed, so that ctest can tell.
#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <cstring>

namespace {

constexpr int kSomethingSkipped = 77; // SKIP_RETURN_CODE of every entry (cmake/raincast.cmake)

} // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    std::setlocale(LC_ALL, "");
    const bool comma = std::strcmp(std::localeconv()->decimal_point, ",") == 0;
    if (std::getenv("RAINCAST_EXPECT_COMMA") != nullptr && !comma) {
        std::fputs("The comma locale could not be set.\n", stderr);
        return 1;
    }
    const int result = RUN_ALL_TESTS();
    const bool skipped = testing::UnitTest::GetInstance()->skipped_test_count() > 0;
    return result == 0 && skipped ? kSomethingSkipped : result;
}
