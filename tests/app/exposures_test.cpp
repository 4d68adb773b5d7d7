// SPDX-License-Identifier: MIT
#include "app/exposures.h"
#include "net/http_settings.h"
#include "platform/busy_guard.h"
#include "support/qt_app.h"

#include <QWidget>

#include <gtest/gtest.h>

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

TEST(ExposuresEndTest, TransfersWaitAloneAfterwards) {
    { const Exposures exposures; }
    EXPECT_FALSE(httpHooks().waiting);
}

} // namespace
} // namespace raincast
