// SPDX-License-Identifier: MIT
// Every fault of every file of an update, while the loop runs and positions come in: it ends, there
// is a picture, and the event loop is never held.
#include "core/listener.h"
#include "position/data_gps_position.h"
#include "support/fault_server.h"
#include "support/gif_maker.h"
#include "support/loopback.h"
#include "weather_page.h"

#include <QAbstractEventDispatcher>
#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <ctime>
#include <set>

namespace raincast {
namespace {

#ifdef __SANITIZE_ADDRESS__
constexpr double kMostHeldMilliseconds = 500;
#else
constexpr double kMostHeldMilliseconds = 50;
#endif

const QString kFrames = test::framesPath("MUX");
const QString kNewest = kFrames + "MUX_20190519_0614_N0R.gif";
const QString kOlder = kFrames + "MUX_20190519_0604_N0R.gif";
const QString kWarnings = "/ridge/Warnings/Short/MUX_Warnings_0.gif";
const QString kHighways = "/ridge/Overlays/Highways/Short/MUX_Highways_Short.gif";

/// How long this thread works at most between two waits for events, in milliseconds of its own
/// time: what other programs do on the machine does not count.
class HoldWatch {
public:
    HoldWatch() {
        auto* const dispatcher = QAbstractEventDispatcher::instance();
        QObject::connect(dispatcher, &QAbstractEventDispatcher::awake, &m_context, [this] {
            m_since = worked();
        });
        QObject::connect(dispatcher, &QAbstractEventDispatcher::aboutToBlock, &m_context, [this] {
            m_most = std::max(m_most, worked() - m_since);
        });
    }
    [[nodiscard]] double most() const { return m_most; }

private:
    static double worked() {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    }
    QObject m_context;
    double m_since = worked();
    double m_most = 0;
};

struct Fault {
    const char* what;
    FaultServer::Answer answer;
};

class ItemWeatherBadDaysTest : public test::WeatherPage {
protected:
    ItemWeatherBadDaysTest() {
        ScopedHttp::waitBriefly();
        m_server.serve(kHighways, "", 404); // tried again with each update
        showSite();
        editAnimation(3);
        QObject::connect(&m_beats, &QTimer::timeout, [this] {
            m_clock.advance(kFileTimePerSecond / 10);
            CHeartbeat::program().Beat();
            m_times.insert(shown());
        });
        QObject::connect(&m_fixes, &QTimer::timeout, [this] {
            CDataGPSPosition fix;
            fix.latitude = 37.1 + (m_north += 0.001);
            fix.longitude = -121.9;
            fix.fixType = kFixGps;
            Listener<CDataGPSPosition>::Notify(fix);
        });
        m_beats.start(2);
        m_fixes.start(5);
    }

    /// Two new frames, warnings and a layer; one of the files is served by `fault`.
    void serve(FaultServer& server, const QString& faulty, const FaultServer::Answer& fault) {
        const QByteArray listing = "\"MUX_20190519_0554_N0R.gif\" \"MUX_20190519_0604_N0R.gif\" "
                                   "\"MUX_20190519_0614_N0R.gif\"";
        server.on(kFrames, answers::respond(200, listing));
        for (const QString& path : {kNewest, kOlder, kWarnings, kHighways}) {
            server.on(path, answers::respond(200, test::columnGif(100)));
        }
        server.on(faulty, fault);
    }
    void updateFrom(const QString& host) {
        ServersSetting::set({host, host});
        m_times.clear();
        EXPECT_TRUE(m_item->command(kUpdate, 0));
        QEventLoop loop;
        QTimer poll;
        QObject::connect(&poll, &QTimer::timeout, [&] {
            if (!m_item->loading()) {
                loop.quit();
            }
        });
        poll.start(1);
        loop.exec();
    }
    /// The state before an update, also on the disk.
    void forget() {
        const QString folder = m_item->state().cacheFolder + "/MUX/";
        for (const char* name :
             {"MUX_20190519_0604_N0R.gif", "MUX_20190519_0614_N0R.gif", "MUX_Highways_Short.gif"}) {
            QFile::remove(folder + name);
        }
        ServersSetting::set({m_server.host(), m_server.host()});
        update();
        ASSERT_EQ(m_item->state().frames.size(), 3U);
    }
    void expectPicture(const std::string& what) {
        const RadarState& state = m_item->state();
        EXPECT_FALSE(state.frames.empty()) << what;
        for (const RadarFrame& frame : state.frames) {
            EXPECT_TRUE(frame.bitmap) << what;
        }
        const std::string status = state.status.toStdString();
        EXPECT_THAT(
            status,
            testing::AnyOf(
                "", "Could not get\nall images.\n", "Could not access server.\n",
                "No radar images found on server.\n", "Could not download\nany radar images.\n"
            )
        ) << what;
        if (status.empty()) {
            EXPECT_EQ(state.frames.back().timeText, "6:14") << what;
        }
    }

    QTimer m_beats;
    QTimer m_fixes;
    double m_north = 0;
    std::set<std::string> m_times; ///< that the loop has shown
};

TEST_F(ItemWeatherBadDaysTest, EveryFaultOfEveryFileEndsAndHoldsNothing) {
    const QByteArray gif = test::columnGif(100);
    const Fault faults[] = {
        {"silence", answers::silence()},
        {"nothing", answers::nothing()},
        {"stall", answers::stall(gif.left(20))},
        {"a byte at a time", answers::drip(std::chrono::milliseconds(20))},
        {"cut", answers::cut(gif, 30)},
        {"reset", answers::reset(gif, 30)},
        {"too long", answers::hugeListing(20 << 20)},
        {"wrong length", answers::wrongLength(gif, 1 << 30)},
        {"another kind", answers::respond(200, "<html>Please log in</html>")},
        {"no picture", answers::respond(200, "GIF89a" + QByteArray(1000, '\xff'))},
        {"503", answers::respond(503, "later")},
        {"headers without end", answers::endlessHeaders()},
    };
    for (const QString& file : {kFrames, kNewest, kOlder, kWarnings, kHighways}) {
        for (const Fault& fault : faults) {
            const std::string what = file.toStdString() + ", " + fault.what;
            forget();
            FaultServer server;
            serve(server, file, fault.answer);
            const HoldWatch watch;
            updateFrom(server.host());
            EXPECT_LT(watch.most(), kMostHeldMilliseconds) << what;
            expectPicture(what);
        }
    }
}

TEST_F(ItemWeatherBadDaysTest, TheLoopGoesOnWhileAServerSaysNothing) {
    const FaultServer silent(answers::silence());
    updateFrom(silent.host());
    EXPECT_EQ(m_item->statusText(), "Could not access server.\n");
    EXPECT_THAT(m_times, testing::IsSupersetOf({"5:34", "5:44", "5:54"}));
}

TEST_F(ItemWeatherBadDaysTest, APortThatRefusesLeavesThePicture) {
    const RefusingPort refusing;
    const HoldWatch watch;
    updateFrom(refusing.host());
    EXPECT_LT(watch.most(), kMostHeldMilliseconds);
    expectPicture("refused");
}

} // namespace
} // namespace raincast
