// SPDX-License-Identifier: MIT
// The feed and the navigator that stands in for the real one, as two processes; a third one takes
// the mutex.
#include "position/feed_qvapi_to_gps_position.h"
#include "position/navigator/navigator_home.h"
#include "position/navigator/navigator_link.h"
#include "position/navigator/navigator_local_port.h"
#include "position/navigator/navigator_waiting.h"
#include "support/event_loop.h"
#include "support/files.h"
#include "support/manual_phase.h"
#include "support/record_listeners.h"
#include "support/test_clock.h"

#include <QProcess>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace raincast {
namespace {

constexpr int kDeadline = 60'000; // milliseconds

/// Another process that is talked with line by line.
class Talk {
public:
    ~Talk() { kill(); }

    void start(const QString& program, const QStringList& arguments) {
        m_process.start(program, arguments);
        EXPECT_TRUE(m_process.waitForStarted(kDeadline));
    }
    /// The next line; empty at the end.
    std::string line() {
        while (!m_process.canReadLine() && m_process.waitForReadyRead(kDeadline)) {
        }
        return m_process.readLine().trimmed().toStdString();
    }
    void write(const std::string& text) {
        m_process.write((text + '\n').c_str());
        m_process.waitForBytesWritten(kDeadline);
    }
    [[nodiscard]] bool saysSomething() { return m_process.waitForReadyRead(0); }
    void kill() {
        m_process.kill();
        EXPECT_TRUE(m_process.waitForFinished(kDeadline) || !running());
    }
    /// Closes its standard input, which ends it.
    void end() {
        m_process.closeWriteChannel();
        EXPECT_TRUE(awaitEnd());
    }
    [[nodiscard]] bool awaitEnd() { return !running() || m_process.waitForFinished(kDeadline); }
    [[nodiscard]] bool running() const { return m_process.state() != QProcess::NotRunning; }

private:
    QProcess m_process;
};

class NavigatorSimTest : public testing::Test {
protected:
    void SetUp() override {
        if (RAINCAST_EMULATED) {
            GTEST_SKIP() << "an emulated program starts no other";
        }
    }
    ~NavigatorSimTest() override { NavigatorWaiting::useHook({}); }

    void startSim() {
        sim.start(
            NAVIGATOR_SIM_PROGRAM,
            {"--commands", "--folder", home.path("temp"), "--route", "10,20 11,20", "--speed", "36"}
        );
        EXPECT_EQ(sim.line(), "listening");
    }
    void tellSim(const std::string& command) {
        sim.write(command);
        EXPECT_EQ(sim.line(), "ok");
    }
    void tick(int times = 1) {
        for (int i = 0; i < 10 * times; ++i) {
            clock.advance(kFileTimePerSecond / 10);
            heartbeat.Beat();
        }
    }
    void link() {
        startSim();
        tick();
        ASSERT_TRUE(feed->linked());
        EXPECT_EQ(sim.line(), "request 32772");
    }
    /// Once unlinked, the 11th tick links again.
    void relink() {
        EXPECT_FALSE(feed->linked());
        tick(10);
        EXPECT_FALSE(feed->linked());
        tick();
        EXPECT_TRUE(feed->linked());
    }
    [[nodiscard]] std::size_t published() const { return positions.records.size(); }
    const CDataGPSPosition& last() const { return positions.records.back(); }

    EventLoop events;
    NavigatorHome home;
    TestClock clock;
    ManualPhase phase{9};
    CHeartbeat heartbeat;
    RecordListener<CDataGPSPosition> positions;
    Talk sim;
    PublishedPosition shown;
    NavigatorLink navigator;
    std::optional<CFeedQVAPI_to_GPSPosition> feed{std::in_place, shown, navigator};
};

TEST_F(NavigatorSimTest, PositionsComeFromTheNavigator) {
    link();
    tick(2);
    ASSERT_EQ(published(), 3U);
    // 36 knots northwards: a hundredth of a minute of latitude a second.
    for (int i = 0; i < 3; ++i) {
        const CDataGPSPosition& position = positions.records[static_cast<std::size_t>(i)];
        EXPECT_NEAR(position.latitude, 10 + (i + 1) * 0.01 / 60, 1e-12);
        EXPECT_EQ(position.longitude, 20);
        EXPECT_EQ(position.course, 0);
        EXPECT_EQ(position.speed, 36);
        EXPECT_EQ(position.fixType, kFixGps);
        EXPECT_GT(position.time, fromCalendar({2020, 1, 1}));
    }
    EXPECT_EQ(readFile(home.sharedFile()).size(), 64);
    EXPECT_EQ(namesIn(home.path("run")), "Quorvane-API-mutex WCE_QVTrekkoMainWnd");
}

TEST_F(NavigatorSimTest, PositionsOfOthersGoToTheNavigator) {
    link();
    CDataGPSPosition other;
    other.latitude = 43.5;
    other.longitude = -79.25;
    other.course = 271.5F;
    other.speed = 6.25F;
    other.altitude = 74;
    other.time = fromCalendar({2007, 3, 23, 12, 35, 19});
    other.fixType = kFixDifferential;
    Listener<CDataGPSPosition>::Notify(other);
    EXPECT_EQ(sim.line(), "request 32");
    EXPECT_EQ(sim.line(), "told 43.5 -79.25 271.5 6.25 74 1174653319 1 400 0");
    EXPECT_TRUE(feed->linked());
}

TEST_F(NavigatorSimTest, AnOlderNavigatorWillDo) {
    startSim();
    tellSim("answer 32772 11");
    tick();
    EXPECT_EQ(sim.line(), "request 32772");
    EXPECT_EQ(sim.line(), "request 31");
    EXPECT_EQ(published(), 1U);
    EXPECT_TRUE(feed->linked());
}

TEST_F(NavigatorSimTest, OneWithoutAPositionStaysLinked) {
    startSim();
    tellSim("answer 32772 12");
    tick(3);
    EXPECT_EQ(published(), 0U);
    EXPECT_TRUE(feed->linked());
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(sim.line(), "request 32772");
    }
    tellSim("answer 32772 0");
    tick();
    EXPECT_EQ(published(), 1U);
}

TEST_F(NavigatorSimTest, OneThatDiesInMidExchangeIsUnlinkedAndItsSuccessorLinked) {
    link();
    tellSim("die");
    tick();
    EXPECT_FALSE(feed->linked());
    EXPECT_EQ(published(), 1U);
    EXPECT_TRUE(sim.awaitEnd());
    tick(11);
    EXPECT_FALSE(feed->linked()) << "the socket that it left is no window";
    EXPECT_EQ(published(), 2U) << "meanwhile it was lost";
    startSim();
    relink();
    EXPECT_EQ(published(), 3U);
}

TEST_F(NavigatorSimTest, OneThatIsKilledWhileItHangsIsUnlinked) {
    link();
    tellSim("hang");
    NavigatorWaiting::useHook([this] {
        sim.kill();
        return true;
    });
    tick();
    EXPECT_FALSE(sim.running());
    EXPECT_FALSE(feed->linked());
}

TEST_F(NavigatorSimTest, TellingOneThatDiesUnlinks) {
    link();
    tellSim("die");
    CDataGPSPosition other;
    Listener<CDataGPSPosition>::Notify(other);
    EXPECT_FALSE(feed->linked());
}

TEST_F(NavigatorSimTest, OneThatHangsIsUnlinkedAfterTheLimit) {
    LocalNavigatorPort impatient(std::chrono::milliseconds{50});
    NavigatorPort::use(&impatient);
    link();
    tellSim("hang");
    tick();
    EXPECT_FALSE(feed->linked());
    EXPECT_TRUE(sim.running());
    NavigatorPort::use(nullptr);
}

TEST_F(NavigatorSimTest, OneThatEndedIsUnlinkedAndLinkedWhenItIsBack) {
    link();
    sim.end();
    tick();
    EXPECT_FALSE(feed->linked());
    startSim();
    relink();
}

TEST_F(NavigatorSimTest, AnotherClientsExchangeIsWaitedFor) {
    link();
    Talk other;
    other.start("flock", {home.path("run/Quorvane-API-mutex"), "sh", "-c", "echo held; read line"});
    ASSERT_EQ(other.line(), "held");
    int calls = 0;
    NavigatorWaiting::useHook([&] {
        EXPECT_FALSE(sim.saysSomething()) << "asked without the mutex";
        if (++calls == 2) {
            other.write("enough");
        }
        return true;
    });
    tick();
    EXPECT_GE(calls, 2);
    EXPECT_EQ(sim.line(), "request 32772");
    EXPECT_EQ(published(), 2U);
}

TEST_F(NavigatorSimTest, AClientThatIsKilledLeavesTheMutex) {
    link();
    Talk other;
    // With --no-fork it is the command itself that holds the file.
    other.start(
        "flock",
        {"--no-fork", home.path("run/Quorvane-API-mutex"), "sh", "-c", "echo held; read line"}
    );
    ASSERT_EQ(other.line(), "held");
    NavigatorWaiting::useHook([&other] {
        other.kill();
        return true;
    });
    tick();
    EXPECT_EQ(published(), 2U);
}

TEST_F(NavigatorSimTest, TheEndOfTheProgramDoesNotWaitForAnotherClient) {
    link();
    Talk other;
    other.start("flock", {home.path("run/Quorvane-API-mutex"), "sh", "-c", "echo held; read line"});
    ASSERT_EQ(other.line(), "held");
    NavigatorWaiting::useHook([] { return false; });
    tick();
    EXPECT_FALSE(feed->linked());
    EXPECT_FALSE(sim.saysSomething());
    EXPECT_TRUE(other.running());
}

TEST_F(NavigatorSimTest, AShortFileUnlinks) {
    link();
    for (const char* size : {"short 63", "short 8", "short 0"}) {
        tellSim(size);
        tick();
        EXPECT_FALSE(feed->linked()) << size;
        EXPECT_EQ(sim.line(), "request 32772");
        tellSim("short 64");
        relink();
        EXPECT_EQ(sim.line(), "request 32772");
    }
}

TEST_F(NavigatorSimTest, WithoutAFolderInTheSettingsThereIsNoLink) {
    home.forgetFolder();
    startSim();
    tick();
    EXPECT_FALSE(feed->linked());
    EXPECT_EQ(ConnectNavigator(navigator, false), kNavigatorNoFolder);
    EXPECT_FALSE(sim.saysSomething());
    home.setFolder(home.path("temp"));
    relink();
}

TEST_F(NavigatorSimTest, AFolderThatIsGoneUnlinks) {
    home.setFolder(home.path("nonesuch"));
    startSim();
    tick();
    EXPECT_FALSE(feed->linked()) << "the file that the navigator wrote is elsewhere";
    EXPECT_EQ(sim.line(), "request 32772");
    EXPECT_FALSE(QDir(home.path("nonesuch")).exists());
}

TEST_F(NavigatorSimTest, TheCloseFlagEndsIt) {
    link();
    DisconnectNavigator(navigator, true);
    EXPECT_EQ(sim.line(), "close");
    EXPECT_TRUE(sim.awaitEnd());
    EXPECT_EQ(ConnectNavigator(navigator, false), kNavigatorAbsent);
}

TEST_F(NavigatorSimTest, TheFeedsEndLeavesItRunning) {
    link();
    feed.reset();
    EXPECT_FALSE(navigator.window);
    tellSim("answer 31 0");
    EXPECT_TRUE(sim.running());
}

TEST_F(NavigatorSimTest, ItIsStartedByItsCommand) {
    RegistryStore store = RegistryStore::inStandardFolders();
    store.setString(
        RegistryStore::Branch::user, "Software/Classes/QVNavObj/Shell/Open/Command", "",
        QStringLiteral("\"%1\" \"%2\"").arg(NAVIGATOR_SIM_PROGRAM, "%1")
    );
    ASSERT_TRUE(store.save(RegistryStore::Branch::user));
    ASSERT_EQ(ConnectNavigator(navigator, false), kNavigatorAbsent);
    EXPECT_EQ(ConnectNavigator(navigator, true), kNavigatorSuccess);
    const auto position = getNavigatorPosition(navigator);
    ASSERT_TRUE(position);
    EXPECT_NEAR(position->latitude, 43.62, 0.01);
    const auto window = NavigatorPort::current().findWindow("WCE_QVTrekkoMainWnd");
    ASSERT_TRUE(window);
    DisconnectNavigator(navigator, true);
    EXPECT_TRUE(QTest::qWaitFor([&window] { return !window->exists(); }, kDeadline));
}

} // namespace
} // namespace raincast
