// SPDX-License-Identifier: MIT
// The server that the viewer starts, at ports of their own: the usual one may be taken here.
#include "app/local_server.h"
#include "support/files.h"
#include "support/http_server.h"
#include "support/loopback.h"
#include "support/qt_app.h"
#include "support/radar_tree.h"
#include "support/scoped_http.h"
#include "support/temporary_home.h"
#include "support/transfers.h"

#include <QProcess>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <optional>

namespace raincast {
namespace {

constexpr int kDeadline = 60'000; // milliseconds
constexpr const char* kPortVariable = "RAINCAST_TEST_PORT";
const QString kProgram = QStringLiteral(RAINCAST_SERVER_PROGRAM);

/// A port that is free at this moment.
int freePort() {
    int port = 0;
    close(bindLoopback(-1, port));
    return port;
}

bool answers(const QString& address) {
    QTcpSocket socket;
    socket.connectToHost("127.0.0.1", address.section(u':', 1).toUShort());
    return socket.waitForConnected(kDeadline);
}

/// A program that notes each of its starts in a file and ends at once.
class UselessProgram {
public:
    UselessProgram() {
        writeFile(path(), "#!/bin/sh\necho start >> \"$0.log\"\n");
        QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    [[nodiscard]] QString path() const { return m_folder.filePath("server"); }
    [[nodiscard]] int starts() const {
        return static_cast<int>(readFile(path() + ".log").count("start"));
    }

private:
    QTemporaryDir m_folder;
};

class LocalServerTest : public test::GuiTest {
protected:
    LocalServerTest() {
        keepLoopbackFromProxies();
        qputenv("XDG_CACHE_HOME", home.path("cache").toLocal8Bit());
        useServers(address, address);
    }
    ~LocalServerTest() override {
        useServers(ServersSetting::localServer(), ServersSetting::localServer());
        qunsetenv("XDG_CACHE_HOME");
    }

    static void useServers(const QString& radar, const QString& basemap) {
        ServersSetting::set({radar, basemap});
    }
    /// What a listing holds; nothing without a server.
    static std::optional<std::set<QString>>
    listingFrom(const QString& host, ConnectionManager& connection) {
        Transfers transfers(connection);
        WaitingTransfer transfer(transfers, host, true, false);
        std::set<QString> names;
        const bool fetched = transfer.FetchQuotedStrings(test::framesPath("TLX"), names);
        return fetched ? std::optional(names) : std::nullopt;
    }

    test::TemporaryHome home;
    const QString address = loopbackHost(freePort());
};

TEST_F(LocalServerTest, ItIsStartedWhereNobodyListensAndEndsWithItsOwner) {
    {
        LocalServer server(address, kProgram);
        EXPECT_EQ(server.processId(), 0);
        const auto names = listingFrom(address, server);
        ASSERT_TRUE(names);
        EXPECT_GT(names->size(), 5U);
        EXPECT_NE(server.processId(), 0);
    }
    EXPECT_FALSE(answers(address));
}

TEST_F(LocalServerTest, OneServerOfTheTwoIsEnoughToWantIt) {
    const HttpServer other;
    useServers(other.host(), address);
    LocalServer server(address, kProgram);
    EXPECT_TRUE(listingFrom(address, server));
    EXPECT_NE(server.processId(), 0);
}

TEST_F(LocalServerTest, AServerThatIsThereIsUsed) {
    HttpServer there;
    useServers(there.host(), there.host());
    there.serve(test::framesPath("TLX"), "\"a name\"");
    LocalServer server(there.host(), kProgram);
    EXPECT_EQ(listingFrom(there.host(), server), std::set<QString>{"a name"});
    EXPECT_EQ(server.processId(), 0);
}

TEST_F(LocalServerTest, AConfiguredOtherServerIsNeverReplaced) {
    const RefusingPort other;
    useServers(other.host(), other.host());
    LocalServer server(address, kProgram);
    EXPECT_FALSE(listingFrom(other.host(), server));
    EXPECT_EQ(server.processId(), 0);
    EXPECT_FALSE(answers(address));
}

TEST_F(LocalServerTest, ItTakesTheirPlaceWhenAnothersServerEnds) {
    auto another = std::make_unique<HttpServer>();
    const QString shared = another->host();
    useServers(shared, shared);
    another->serve(test::framesPath("TLX"), "\"a name\"");
    LocalServer server(shared, kProgram);
    EXPECT_EQ(listingFrom(shared, server), std::set<QString>{"a name"});
    another.reset();
    const auto names = listingFrom(shared, server);
    ASSERT_TRUE(names);
    EXPECT_GT(names->size(), 5U);
    EXPECT_NE(server.processId(), 0);
}

TEST_F(LocalServerTest, WithoutTheProgramNothingIsStarted) {
    LocalServer server(address, home.path("missing"));
    EXPECT_FALSE(listingFrom(address, server));
    EXPECT_EQ(server.processId(), 0);
}

TEST_F(LocalServerTest, AProgramThatDoesNotListenIsGivenUp) {
    const UselessProgram program;
    LocalServer server(address, program.path());
    for (int i = 0; i < 6; ++i) {
        EXPECT_FALSE(listingFrom(address, server));
    }
    EXPECT_EQ(program.starts(), 3);
}

TEST_F(LocalServerTest, NothingWaitsButTheTransferWhileItStarts) {
    writeFile(home.path("slow"), "#!/bin/sh\nexec sleep 1\n");
    QFile::setPermissions(home.path("slow"), QFile::ReadOwner | QFile::ExeOwner);
    LocalServer server(address, home.path("slow"));
    int events = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&events] { ++events; });
    timer.start(10);
    EXPECT_FALSE(listingFrom(address, server));
    EXPECT_GT(events, 10);
}

TEST_F(LocalServerTest, TheEndDoesNotWaitForAServerThatStays) {
    writeFile(home.path("deaf"), "#!/bin/sh\ntrap '' TERM\necho up\nwhile :; do sleep 1; done\n");
    QFile::setPermissions(home.path("deaf"), QFile::ReadOwner | QFile::ExeOwner);
    auto server = std::make_unique<LocalServer>(address, home.path("deaf"));
    EXPECT_FALSE(listingFrom(address, *server));
    EXPECT_NE(server->processId(), 0);
    const auto start = std::chrono::steady_clock::now();
    server.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(400));
}

// In a process of its own, which ends as a viewer that is killed does.
TEST(LocalServerDeathTest, AKilledViewerTakesItAlong) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const QTemporaryDir cache;
    if (!qEnvironmentVariableIsSet(kPortVariable)) {
        qputenv(kPortVariable, QByteArray::number(freePort()));
        qputenv("XDG_CACHE_HOME", QFile::encodeName(cache.path()));
    }
    const QString address = loopbackHost(qEnvironmentVariableIntValue(kPortVariable));
    const auto dying = [&address] {
        test::qtApp();
        ServersSetting::set({address, address});
        LocalServer server(address, kProgram);
        server.EstablishConnection([](bool) {});
        // A busy machine may take longer to start it than the viewer waits.
        if (!QTest::qWaitFor([&address] { return answers(address); }, kDeadline)) {
            std::_Exit(1);
        }
        std::raise(SIGKILL);
    };
    EXPECT_EXIT(dying(), testing::KilledBySignal(SIGKILL), "");
    EXPECT_TRUE(QTest::qWaitFor([&address] { return !answers(address); }, kDeadline));
    qunsetenv(kPortVariable);
    qunsetenv("XDG_CACHE_HOME");
}

/// Runs the program itself; what it asks of other machines goes to a proxy that counts.
class CachedStartTest : public test::GuiTest {
protected:
    int picture(const QStringList& arguments) {
        QProcess program;
        program.setProcessEnvironment(environment);
        program.setWorkingDirectory(home.root());
        program.start(
            QStringLiteral(RAINCAST_PROGRAM),
            QStringList{"--screenshot", "picture.png", "--page-file", "mine.cfg"} + arguments
        );
        EXPECT_TRUE(program.waitForFinished(kDeadline));
        return program.exitCode();
    }

    test::TemporaryHome home;
    QProcessEnvironment environment = home.environment();
};

TEST_F(CachedStartTest, WithEverythingCachedNothingIsAskedFor) {
    HttpServer server;
    const HttpServer proxy;
    test::publishLayers(server, "MUX");
    test::publishFrames(server, {"20190519_0554"}, "MUX");
    environment.insert("no_proxy", "127.0.0.1");
    environment.insert("http_proxy", "http://" + proxy.host());
    environment.remove("all_proxy");
    EXPECT_EQ(
        picture(
            {"--site", "MUX", "--radar-server", server.host(), "--basemap-server", server.host()}
        ),
        0
    );
    EXPECT_GT(server.count(), 8);

    const QStringList elsewhere = {
        "--radar-server", "radar.example", "--basemap-server", "basemap.example"};
    EXPECT_EQ(picture(elsewhere), 0);
    EXPECT_EQ(proxy.count(), 0);
    EXPECT_EQ(picture(QStringList{"--site", "LWX"} + elsewhere), 1);
    EXPECT_GT(proxy.count(), 0);
}

} // namespace
} // namespace raincast
