// SPDX-License-Identifier: MIT
#include "page/taps.h"
#include "support/qt_app.h"
#include "window/screen_metrics.h"

#include <QApplication>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

#include <functional>
#include <vector>

namespace raincast {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TapsTest : public test::GuiTest {
protected:
    ~TapsTest() override { ScreenMetrics::use(std::nullopt); }

    static void useDpi(int dotsPerInch) {
        ScreenMetrics metrics;
        metrics.logPixelsY = dotsPerInch;
        ScreenMetrics::use(metrics);
    }
    /// Whether what is put down and lifted so far away is a tap.
    bool isTap(int distance) {
        taps.pressed({50, 50});
        return taps.lifted({50 + distance, 50});
    }

    /// A tap, and what follows at once; then the interval of a double press, and much longer.
    void tapAndWait(const std::function<void(Taps&)>& then) {
        const int interval = QApplication::doubleClickInterval();
        QApplication::setDoubleClickInterval(10);
        taps.awaitSecond({7, 8});
        EXPECT_THAT(single, IsEmpty());
        then(taps);
        bool over = false;
        QTimer::singleShot(200, [&over] { over = true; });
        EXPECT_TRUE(QTest::qWaitFor([&over] { return over; }));
        QApplication::setDoubleClickInterval(interval);
    }

    std::vector<QPoint> single;
    Taps taps{[this](QPoint place) { single.push_back(place); }};
};

TEST_F(TapsTest, TremblesTwiceAsFarOnAScreenOfHighResolution) {
    useDpi(96);
    EXPECT_TRUE(isTap(0));
    EXPECT_TRUE(isTap(6));
    EXPECT_FALSE(isTap(7));
    useDpi(192);
    EXPECT_TRUE(isTap(12));
    EXPECT_FALSE(isTap(13));
}

TEST_F(TapsTest, LiftingWithoutAPressIsNoTap) {
    EXPECT_FALSE(taps.lifted({50, 50}));
    taps.pressed({50, 50});
    taps.ended();
    EXPECT_FALSE(taps.lifted({50, 50}));
    EXPECT_TRUE(isTap(0));
    EXPECT_FALSE(taps.lifted({50, 50})); // a press counts once
}

TEST_F(TapsTest, TellsOfATapThatNoSecondPressFollows) {
    tapAndWait([](Taps& /*taps*/) {});
    EXPECT_THAT(single, ElementsAre(QPoint(7, 8)));
}

TEST_F(TapsTest, KeepsATapToItselfThatASecondPressFollows) {
    tapAndWait([](Taps& second) { second.pressed({7, 8}); });
    EXPECT_THAT(single, IsEmpty());
    tapAndWait([](Taps& second) { second.ended(); });
    EXPECT_THAT(single, IsEmpty());
}

} // namespace
} // namespace raincast
