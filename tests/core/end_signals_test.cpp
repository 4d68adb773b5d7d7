// SPDX-License-Identifier: MIT
#include "core/end_signals.h"
#include "support/qt_app.h"

#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>
#include <sys/prctl.h>

#include <csignal>

namespace raincast {
namespace {

class EndSignalsTest : public test::GuiTest {};

TEST_F(EndSignalsTest, EachOfThemIsACallInTheEventLoop) {
    EndSignals signals;
    EXPECT_FALSE(EndSignals::came());
    int calls = 0;
    signals.onEnd([&calls] { ++calls; });
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        calls = 0;
        std::raise(number);
        EXPECT_EQ(calls, 0);
        EXPECT_TRUE(EndSignals::came());
        test::settle();
        EXPECT_EQ(calls, 1) << number;
    }
}

TEST_F(EndSignalsTest, ASignalBeforeTheCallIsNotLost) {
    EndSignals signals;
    std::raise(SIGTERM);
    int calls = 0;
    signals.onEnd([&calls] { ++calls; });
    test::settle();
    EXPECT_EQ(calls, 1);
}

TEST_F(EndSignalsTest, NestedEventLoopsHearThem) {
    EndSignals signals;
    QEventLoop loop;
    signals.onEnd([&loop] { loop.exit(7); });
    QTimer::singleShot(0, &loop, [] { std::raise(SIGINT); });
    EXPECT_EQ(loop.exec(), 7);
}

TEST_F(EndSignalsTest, ManyAtOnceNeitherBlockNorCallForEver) {
    EndSignals signals;
    int calls = 0;
    signals.onEnd([&calls] { ++calls; });
    for (int i = 0; i < 100'000; ++i) {
        std::raise(SIGTERM);
    }
    test::settle();
    test::settle();
    EXPECT_EQ(calls, 1);
}

TEST_F(EndSignalsTest, NothingIsCalledOnceTheCallIsTakenBack) {
    EndSignals signals;
    int calls = 0;
    signals.onEnd([&calls] { ++calls; });
    signals.onEnd({});
    std::raise(SIGTERM);
    test::settle();
    EXPECT_EQ(calls, 0);
    EXPECT_TRUE(EndSignals::came());
}

TEST_F(EndSignalsTest, TheSignalsGetTheirMeaningBack) {
    static volatile std::sig_atomic_t heard = 0;
    std::signal(SIGTERM, [](int) { heard = 1; });
    {
        const EndSignals signals;
        std::raise(SIGTERM);
        EXPECT_TRUE(EndSignals::came());
    }
    EXPECT_FALSE(EndSignals::came());
    EXPECT_EQ(heard, 0);
    std::raise(SIGTERM);
    EXPECT_EQ(heard, 1);
    std::signal(SIGTERM, SIG_DFL);
}

TEST_F(EndSignalsTest, WhatIsIgnoredStaysIgnored) {
    std::signal(SIGHUP, SIG_IGN);
    {
        const EndSignals signals;
        std::raise(SIGHUP);
        EXPECT_FALSE(EndSignals::came());
    }
    std::signal(SIGHUP, SIG_DFL);
}

TEST_F(EndSignalsTest, TheEndOfTheParentIsSigterm) {
    EndSignals::endWithParent();
    int number = 0;
    ASSERT_EQ(prctl(PR_GET_PDEATHSIG, &number), 0);
    EXPECT_EQ(number, SIGTERM);
    prctl(PR_SET_PDEATHSIG, 0);
}

} // namespace
} // namespace raincast
