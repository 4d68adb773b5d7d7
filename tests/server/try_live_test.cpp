// SPDX-License-Identifier: MIT
// scripts/try-live against stand-ins, and without a network.
#include "core/clock.h"
#include "live_sim/live_sim.h"
#include "provider/live_object.h"
#include "support/level3_maker.h"
#include "support/loopback.h"

#include <QProcess>
#include <QStandardPaths>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class TryLiveTest : public ::testing::Test {
protected:
    void SetUp() override {
        if (QStandardPaths::findExecutable("python3").isEmpty()) {
            GTEST_SKIP() << "python3 is not installed";
        }
        keepLoopbackFromProxies();
    }
    int run(const QByteArray& frames, const QByteArray& ring, const QByteArray& alerts) {
        QProcess process;
        process.start(
            QStringLiteral(RAINCAST_SOURCE_DIR "/scripts/try-live"),
            {"TLX", "--frames", frames, "--fallback", ring, "--warnings", alerts,
             "--other-warnings", alerts}
        );
        EXPECT_TRUE(process.waitForFinished(120'000));
        m_text = process.readAllStandardOutput().toStdString();
        return process.exitCode();
    }
    static QByteArray product(const std::string& awipsId, int code, FileTime time) {
        Level3ToMake wanted;
        wanted.awipsId = awipsId;
        wanted.code = code;
        wanted.takenAt(time);
        return QByteArray::fromStdString(makeLevel3(wanted));
    }

    std::string m_text;
};

TEST_F(TryLiveTest, SaysWhatDiffers) {
    LiveSim sim;
    // Of today, whatever the hour.
    const FileTime now = SystemClock().now();
    for (const auto& [name, code] :
         {std::pair("N0B", 153), {"N0G", 154}, {"N0S", 56}, {"NCR", 37}}) {
        sim.bucket.put(
            keyOf({"TLX", name}, now), product(std::string(name) + "TLX", code, now), now
        );
    }
    int number = 0;
    for (const auto& [folder, code] :
         {std::pair("p94r0", 94),
          {"p99v0", 99},
          {"56rm0", 56},
          {"p37cr", 37},
          {"78ohp", 78},
          {"80stp", 80}}) {
        sim.ring.put(folder, "ktlx", ++number, now, product("XXXTLX", code, now));
    }
    EXPECT_EQ(run(sim.bucket.url(), sim.ring.url(), sim.alerts.url()), 0) << m_text;
    EXPECT_THAT(m_text, HasSubstr("N0BTLX, code 153, 0 min old"));
    EXPECT_THAT(m_text, HasSubstr("All is as expected."));
    sim.ring.put("p94r0", "ktlx", 9, now, "<html>Log in</html>");
    sim.alerts.breakBy(sim_errors::problem());
    EXPECT_EQ(run(sim.bucket.url(), sim.ring.url(), sim.alerts.url()), 1) << m_text;
    EXPECT_THAT(m_text, HasSubstr("3 answers differ from what is expected."));
}

TEST_F(TryLiveTest, SaysThatThereIsNoNetwork) {
    const RefusingPort port;
    const QByteArray url = "http://" + port.host().toUtf8();
    EXPECT_EQ(run(url, url, url), 2);
    EXPECT_THAT(m_text, HasSubstr("No network: none of the providers can be reached."));
}

} // namespace
} // namespace raincast
