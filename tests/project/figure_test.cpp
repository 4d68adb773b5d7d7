// SPDX-License-Identifier: MIT
// What measurements print for ./bench.
#include "support/figure.h"
#include "support/files.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace raincast {
namespace {

class FigureTest : public ::testing::Test {
protected:
    FigureTest() { qputenv("RAINCAST_FIGURES", file.toLocal8Bit()); }
    ~FigureTest() override { qunsetenv("RAINCAST_FIGURES"); }

    QTemporaryDir folder;
    QString file = folder.filePath(QStringLiteral("figures"));
};

TEST_F(FigureTest, EachIsALineOfTheFile) {
    testing::internal::CaptureStdout();
    const Figure load = Figure::of({6.5, 2, 3.25, 3, 4}, "Load", "one read");
    print(load.withAim(AimOf::ratio, 8));
    Figure rate = Figure::of(100, 400, "a second", "Pictures", "empty ones");
    rate.better = Better::higher;
    print(rate.withAim(AimOf::own, 400));
    print(Figure{.what = "Held", .unit = "ms", .own = 12.5});
    print(CurvePoint{"Start", "marks", 100'000, "ms", 90.25, "none", 80});
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(
        readFile(file), "figure\tLoad\tms\t6.5\tone read\t2\t3.25\tratio\t8\tlower\n"
                        "figure\tPictures\ta second\t100\tempty ones\t400\t0.25\town\t400\thigher\n"
                        "figure\tHeld\tms\t12.5\t\t0\t0\tnothing\t0\tlower\n"
                        "point\tStart\tmarks\t100000\tms\t90.25\tnone\t80\n"
    );
}

TEST_F(FigureTest, PeopleReadThePeerAndTheAim) {
    testing::internal::CaptureStdout();
    print(
        Figure::of(82, 33, "ms", "First picture", "an empty window").withAim(AimOf::difference, 30)
    );
    EXPECT_EQ(
        testing::internal::GetCapturedStdout(),
        "First picture: 82 ms, an empty window 33 ms: 2.48 times (aim: at most 30 ms more)\n"
    );
}

TEST(FigureWithoutAFileTest, OnlyPeopleAreTold) {
    const QTemporaryDir folder;
    qunsetenv("RAINCAST_FIGURES");
    testing::internal::CaptureStdout();
    print(Figure{.what = "Held", .unit = "ms", .own = 12});
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Held: 12 ms\n");
}

TEST(RatioTest, TellsTheMediansPairByPair) {
    double first = 0;
    double second = 0;
    int tidied = 0;
    const Ratio ratio = toldRatioOf(
        3, [&first] { return 10 * ++first; }, [&second] { return ++second; },
        [&tidied] { ++tidied; }
    );
    EXPECT_EQ(ratio.firstMilliseconds, 30); // of 20, 30 and 40: the first round does not count
    EXPECT_EQ(ratio.secondMilliseconds, 3);
    EXPECT_EQ(ratio.median, 10);
    EXPECT_EQ(tidied, 4);
}

} // namespace
} // namespace raincast
