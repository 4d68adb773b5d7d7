// SPDX-License-Identifier: MIT
// The servers that the viewer starts.
#include "app/local_server.h"
#include "app/local_servers.h"
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
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <optional>

namespace raincast {
namespace {

constexpr int kDeadline = 60'000; // milliseconds
constexpr const char* kFolderVariable = "RAINCAST_TEST_FOLDER";
const QString kProgram = QStringLiteral(RAINCAST_SERVER_PROGRAM);
// Live radar without a provider: it asks nobody.
const QStringList kNoProviders = {"--live-frames",   "none", "--live-fallback", "none",
                                  "--live-warnings", "none"};

bool answers(const QString& address) {
    QTcpSocket socket;
    socket.connectToHost("127.0.0.1", address.section(u':', 1).toUShort());
    return socket.waitForConnected(kDeadline);
}

/// A program that is a shell script; "$0" is its file.
class Script {
public:
    explicit Script(const QByteArray& lines) {
        writeFile(path(), "#!/bin/sh\n" + lines);
        QFile::setPermissions(path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    [[nodiscard]] QString path() const { return m_folder.filePath("server"); }
    [[nodiscard]] QByteArray log() const { return readFile(path() + ".log"); }

private:
    QTemporaryDir m_folder;
};

class LocalServerTest : public test::GuiTest {
protected:
    LocalServerTest() {
        keepLoopbackFromProxies();
        qputenv("XDG_CACHE_HOME", home.path("cache").toLocal8Bit());
    }
    ~LocalServerTest() override {
        ServersSetting::set({ServersSetting::defaultHost(), ServersSetting::defaultHost()});
        qunsetenv("XDG_CACHE_HOME");
    }

    static void choose(WeatherSource source) {
        ServersSetting::choose(source, ServersSetting::hosts());
    }
    /// What a listing of the server in use holds; nothing without a server.
    static std::optional<std::set<QString>> listingFrom(ConnectionManager& connection) {
        Transfers transfers(connection);
        WaitingTransfer transfer(transfers, ServersSetting::current().radar, true, false);
        std::set<QString> names;
        const bool fetched = transfer.FetchQuotedStrings(test::framesPath("TLX"), names);
        return fetched ? std::optional(names) : std::nullopt;
    }

    test::TemporaryHome home;
};

TEST(LocalServerPlaceTest, IsBesideTheViewerOrInTheFolderOfPrograms) {
    const QTemporaryDir folder;
    const QString viewer = folder.filePath("usr/lib/triplet/raincast");
    const QString installed = LocalServer::programFor(viewer);
    EXPECT_TRUE(installed.endsWith("/bin/raincast-server")) << installed.toStdString();
    EXPECT_FALSE(installed.contains("/raincast/"));
    const QString beside = viewer + "/raincast-server";
    writeFile(beside, QByteArray());
    EXPECT_EQ(LocalServer::programFor(viewer), beside);
}

TEST_F(LocalServerTest, TheOneThatIsWantedIsStartedAtAPortOfItsOwnAndEndsWithItsOwner) {
    choose(WeatherSource::sample);
    QString address;
    {
        LocalServers servers(kProgram, kNoProviders);
        LocalServers others(kProgram, kNoProviders);
        EXPECT_EQ(servers.sample().processId(), 0);
        const auto names = listingFrom(servers);
        ASSERT_TRUE(names);
        EXPECT_GT(names->size(), 26U * 60 / 10); // of 26 hours
        EXPECT_NE(servers.sample().processId(), 0);
        EXPECT_EQ(servers.live().processId(), 0);
        address = servers.sample().address();
        EXPECT_TRUE(address.startsWith("127.0.0.1:"));

        ASSERT_TRUE(listingFrom(others));
        EXPECT_NE(others.sample().address(), address);
    }
    EXPECT_FALSE(answers(address));
}

TEST_F(LocalServerTest, AnotherChoiceStartsTheOtherOneAndEndsTheFirst) {
    choose(WeatherSource::sample);
    LocalServers servers(kProgram, kNoProviders);
    ASSERT_TRUE(listingFrom(servers));
    const QString address = servers.sample().address();
    choose(WeatherSource::live);
    EXPECT_EQ(servers.sample().address(), QString());
    EXPECT_EQ(listingFrom(servers), std::set<QString>{"../"});
    EXPECT_NE(servers.live().processId(), 0);
    EXPECT_TRUE(QTest::qWaitFor([&address] { return !answers(address); }, kDeadline));
    choose(WeatherSource::sample);
    ASSERT_TRUE(listingFrom(servers));
    EXPECT_EQ(servers.live().processId(), 0);
    choose(WeatherSource::another);
    EXPECT_EQ(servers.sample().processId(), 0);
}

TEST_F(LocalServerTest, NobodyElsesServerIsUsed) {
    HttpServer there;
    there.serve(test::framesPath("TLX"), "\"a name\"");
    ServersSetting::choose(WeatherSource::sample, {there.host(), there.host()});
    LocalServers servers(kProgram, kNoProviders);
    ASSERT_TRUE(listingFrom(servers));
    EXPECT_EQ(there.count(), 0);
    ServersSetting::choose(WeatherSource::another, {there.host(), there.host()});
    EXPECT_EQ(listingFrom(servers), std::set<QString>{"a name"});
}

TEST_F(LocalServerTest, AnotherServerIsNeverReplaced) {
    const RefusingPort other;
    ServersSetting::set({other.host(), other.host()});
    LocalServers servers(kProgram, kNoProviders);
    EXPECT_FALSE(listingFrom(servers));
    EXPECT_EQ(servers.sample().processId(), 0);
    EXPECT_EQ(servers.live().processId(), 0);
}

TEST_F(LocalServerTest, OneThatEndedIsStartedAgain) {
    choose(WeatherSource::sample);
    LocalServers servers(kProgram, kNoProviders);
    ASSERT_TRUE(listingFrom(servers));
    kill(static_cast<pid_t>(servers.sample().processId()), SIGKILL);
    ASSERT_TRUE(QTest::qWaitFor([&] { return servers.sample().address().isEmpty(); }, kDeadline));
    EXPECT_TRUE(listingFrom(servers));
}

TEST_F(LocalServerTest, WithoutTheProgramNothingIsStartedAndTheTransferSaysWhoFails) {
    choose(WeatherSource::live);
    LocalServers servers(home.path("missing"), kNoProviders);
    Transfers transfers(servers);
    WaitingTransfer transfer(transfers, ServersSetting::current().radar, true, false);
    std::set<QString> names;
    EXPECT_FALSE(transfer.FetchQuotedStrings(test::framesPath("TLX"), names));
    EXPECT_EQ(transfer.trouble(), "Raincast's live radar server does not answer.");
    EXPECT_EQ(servers.live().processId(), 0);
}

TEST_F(LocalServerTest, TheArgumentsSayWhatIsServed) {
    const Script script("echo \"$@\" >> \"$0.log\"\n");
    LocalServers servers(script.path(), kNoProviders);
    choose(WeatherSource::live);
    EXPECT_FALSE(listingFrom(servers));
    choose(WeatherSource::sample);
    EXPECT_FALSE(listingFrom(servers));
    const QString rest = " --listen 127.0.0.1:0 --end-with-parent --quiet";
    const QStringList lines = QString::fromUtf8(script.log()).split('\n');
    ASSERT_EQ(lines.size(), 3);
    EXPECT_EQ(lines[0], "--live --hours 26 " + kNoProviders.join(' ') + rest);
    EXPECT_EQ(lines[1], "--sample --hours 26" + rest);
}

TEST_F(LocalServerTest, AProgramThatDoesNotListenIsGivenUp) {
    const Script script("echo start >> \"$0.log\"\n");
    choose(WeatherSource::sample);
    LocalServers servers(script.path());
    for (int i = 0; i < 6; ++i) {
        EXPECT_FALSE(listingFrom(servers));
    }
    EXPECT_EQ(script.log().count("start"), 3);
}

TEST_F(LocalServerTest, WhatElseAProgramPrintsIsNoAddress) {
    const Script script("echo up\necho Serving nothing at all\necho http://127.0.0.1:9/\n"
                        "echo Publishing at http://127.0.0.1:9/\n");
    LocalServer server(script.path(), {});
    std::optional<QString> address;
    server.use([&address](const QString& given) { address = given; });
    EXPECT_TRUE(QTest::qWaitFor([&address] { return address.has_value(); }, kDeadline));
    EXPECT_EQ(address, QString());
}

TEST_F(LocalServerTest, NothingWaitsButTheTransferWhileItStarts) {
    const Script script("exec sleep 1\n");
    choose(WeatherSource::sample);
    LocalServers servers(script.path());
    int events = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&events] { ++events; });
    timer.start(10);
    EXPECT_FALSE(listingFrom(servers));
    EXPECT_GT(events, 10);
}

TEST_F(LocalServerTest, TheEndDoesNotWaitForAServerThatStays) {
    const Script script("trap '' TERM\necho Serving nothing at http://127.0.0.1:9/\n"
                        "while :; do sleep 1; done\n");
    auto server = std::make_unique<LocalServer>(script.path(), QStringList());
    QString address;
    server->use([&address](const QString& given) { address = given; });
    EXPECT_TRUE(QTest::qWaitFor([&address] { return !address.isEmpty(); }, kDeadline));
    EXPECT_EQ(address, "127.0.0.1:9");
    EXPECT_NE(server->processId(), 0);
    const auto start = std::chrono::steady_clock::now();
    server.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(400));
}

// In a process of its own, which ends as a viewer that is killed does.
TEST(LocalServerDeathTest, AKilledViewerTakesItAlong) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const QTemporaryDir folder;
    if (!qEnvironmentVariableIsSet(kFolderVariable)) {
        qputenv(kFolderVariable, QFile::encodeName(folder.path()));
        qputenv("XDG_CACHE_HOME", QFile::encodeName(folder.path()));
    }
    const QString note = qEnvironmentVariable(kFolderVariable) + "/address";
    const auto dying = [&note] {
        test::qtApp();
        LocalServer server(kProgram, {"--sample"});
        QString address;
        server.use([&address](const QString& given) { address = given; });
        if (!QTest::qWaitFor([&address] { return !address.isEmpty(); }, kDeadline)) {
            std::_Exit(1);
        }
        writeFile(note, address.toUtf8());
        std::raise(SIGKILL);
    };
    EXPECT_EXIT(dying(), testing::KilledBySignal(SIGKILL), "");
    const QString address = QString::fromUtf8(readFile(note));
    EXPECT_TRUE(address.startsWith("127.0.0.1:"));
    EXPECT_TRUE(QTest::qWaitFor([&address] { return !answers(address); }, kDeadline));
    qunsetenv(kFolderVariable);
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
