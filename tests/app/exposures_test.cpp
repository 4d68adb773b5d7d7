// SPDX-License-Identifier: MIT
#include "app/exposures.h"
#include "core/busy_guard.h"
#include "core/end_signals.h"
#include "net/http_settings.h"
#include "position/navigator/navigator_waiting.h"
#include "support/qt_app.h"
#include "window/modal.h"

#include <QWidget>

#include <gtest/gtest.h>

#include <csignal>

namespace raincast {
namespace {

class Counting : public QWidget {
public:
    int paints = 0;

protected:
    void paintEvent(QPaintEvent* /*event*/) override { ++paints; }
};

class ExposuresTest : public test::GuiTest {
protected:
    Exposures exposures;
    Counting window;

    ExposuresTest() {
        test::show(window);
        window.paints = 0;
    }
};

TEST_F(ExposuresTest, AWaitingTransferLetsWindowsBePainted) {
    const BusyGuard busy;
    window.update();
    httpHooks().waiting();
    EXPECT_EQ(window.paints, 1);
}

TEST_F(ExposuresTest, WithoutAGuardNothingGetsThrough) {
    window.update();
    httpHooks().waiting();
    EXPECT_EQ(window.paints, 0);
}

TEST_F(ExposuresTest, SoDoesAWaitForTheNavigator) {
    NavigatorWaiting waiting;
    window.update();
    while (window.paints == 0) {
        ASSERT_TRUE(waiting.goesOn());
    }
}

TEST_F(ExposuresTest, ARequestToEndEndsAWaitForTheNavigatorAndFurtherTransfers) {
    EXPECT_FALSE(httpHooks().ending());
    Modal::requestEnd();
    EXPECT_TRUE(httpHooks().ending());
    NavigatorWaiting waiting;
    while (waiting.goesOn()) {
    }
    Modal::forgetEnd();
    EXPECT_FALSE(httpHooks().ending());
}

TEST_F(ExposuresTest, SoDoesASignalToEnd) {
    const EndSignals signals;
    std::raise(SIGTERM);
    EXPECT_TRUE(httpHooks().ending());
    NavigatorWaiting waiting;
    while (waiting.goesOn()) {
    }
}

TEST(ExposuresEndTest, TransfersWaitAloneAfterwards) {
    { const Exposures exposures; }
    EXPECT_FALSE(httpHooks().waiting);
    EXPECT_FALSE(httpHooks().ending);
}

} // namespace
} // namespace raincast
