// SPDX-License-Identifier: MIT
// How long the program takes to end while it waits for the network: no longer than without.
#include "support/fault_server.h"
#include "support/files.h"
#include "support/loopback.h"
#include "support/qt_app.h"
#include "support/radar_tree.h"
#include "support/temporary_home.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QTest>

#include <gtest/gtest.h>

#include <csignal>
#include <functional>

namespace raincast {
namespace {

constexpr int kDeadline = 60'000; // milliseconds
constexpr int kMostLonger = 200;

class ProgramEndTest : public test::GuiTest {
protected:
    ProgramEndTest() {
        environment.remove("http_proxy");
        environment.remove("all_proxy");
        environment.insert("ASAN_OPTIONS", "verify_asan_link_order=0:detect_leaks=0");
    }

    /// How long a viewer takes to end, in milliseconds, that is asked to when `waits` says so.
    qint64 endOf(const QStringList& arguments, const std::function<bool()>& waits) {
        QProcess program;
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory(home.root());
        program.start(QStringLiteral(RAINCAST_PROGRAM), arguments);
        EXPECT_TRUE(QTest::qWaitFor(waits, kDeadline));
        QElapsedTimer time;
        time.start();
        kill(static_cast<pid_t>(program.processId()), SIGTERM);
        EXPECT_TRUE(program.waitForFinished(kDeadline));
        const qint64 taken = time.elapsed();
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(program.exitCode(), 0);
        return taken;
    }
    static QStringList from(const QString& server) {
        return {"--site", "MUX", "--radar-server", server, "--basemap-server", server};
    }
    /// The end of a viewer that has nothing to wait for, on this machine at this moment.
    qint64 usualEnd() {
        const FaultServer refusing(answers::respond(404, ""));
        return endOf(from(refusing.host()), [&] { return refusing.requests().size() == 1; });
    }

    test::TemporaryHome home;
    QProcessEnvironment environment = home.environment();
};

TEST_F(ProgramEndTest, ANameThatNeverResolvesDoesNotHoldIt) {
    const qint64 usual = usualEnd();
    const QString asked = home.path("asked");
    environment.insert("LD_PRELOAD", QStringLiteral(HANGING_RESOLVER_LIBRARY));
    environment.insert("HANGING_RESOLVER_FILE", asked);
    EXPECT_LT(
        endOf(from("radar.example"), [&asked] { return QFile::exists(asked); }),
        2 * usual + kMostLonger
    );
}

TEST_F(ProgramEndTest, NoServerHoldsIt) {
    const qint64 usual = usualEnd();
    const FaultServer::Answer answersOfServers[] = {
        answers::silence(), answers::stall("GIF89a"), answers::drip(std::chrono::milliseconds(10)),
        answers::endlessHeaders()};
    for (const FaultServer::Answer& answer : answersOfServers) {
        const FaultServer server(answer);
        const auto asked = [&server] { return !server.requests().empty(); };
        EXPECT_LT(endOf(from(server.host()), asked), 2 * usual + kMostLonger);
    }
}

} // namespace
} // namespace raincast
