// SPDX-License-Identifier: MIT
#include "app/exposures.h"
#include "core/end_signals.h"
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

TEST_F(ExposuresTest, AWaitForTheNavigatorLetsWindowsBePainted) {
    NavigatorWaiting waiting;
    window.update();
    while (window.paints == 0) {
        ASSERT_TRUE(waiting.goesOn());
    }
}

TEST_F(ExposuresTest, ARequestToEndEndsIt) {
    Modal::requestEnd();
    NavigatorWaiting waiting;
    while (waiting.goesOn()) {
    }
    Modal::forgetEnd();
}

TEST_F(ExposuresTest, SoDoesASignalToEnd) {
    const EndSignals signals;
    std::raise(SIGTERM);
    NavigatorWaiting waiting;
    while (waiting.goesOn()) {
    }
}

} // namespace
} // namespace raincast
