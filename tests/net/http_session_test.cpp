// SPDX-License-Identifier: MIT
#include "core/busy_guard.h"
#include "net/http_session.h"
#include "support/fault_server.h"
#include "support/http_server.h"
#include "support/loopback.h"
#include "support/scoped_http.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <optional>
#include <string>

namespace raincast {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::HasSubstr;

class HttpSessionTest : public testing::Test {
protected:
    static QByteArray url(const QString& host, const char* path = "/") {
        return "http://" + host.toUtf8() + path;
    }
    static QByteArray readAll(HttpSession& session) {
        QByteArray body;
        for (QByteArrayView piece = session.read(); !piece.isEmpty(); piece = session.read()) {
            body += piece.toByteArray();
        }
        session.close();
        return body;
    }
    [[nodiscard]] std::string outcome() const {
        return m_http.finished.empty() ? "(none)" : m_http.finished.back().second.toStdString();
    }

    ScopedHttp m_http;
};

/// Sets or removes an environment variable for the length of a test.
class ScopedEnvironment {
public:
    ScopedEnvironment(const char* name, const char* value) : m_name(name) {
        if (const char* old = std::getenv(name)) {
            m_old = old;
        }
        put(value);
    }
    ~ScopedEnvironment() { put(m_old ? m_old->c_str() : nullptr); }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    void put(const char* value) { value != nullptr ? setenv(m_name, value, 1) : unsetenv(m_name); }
    const char* m_name;
    std::optional<std::string> m_old;
};

TEST_F(HttpSessionTest, WithoutLibcurlEveryRequestFailsAtOnce) {
    HttpServer server;
    HttpSession session(nullptr);
    EXPECT_FALSE(session.open(url(server.host())));
    EXPECT_EQ(session.status(), 0);
    EXPECT_TRUE(session.read().isEmpty());
    EXPECT_EQ(outcome(), "libcurl is not installed");
    EXPECT_FALSE(session.open(url(server.host())));
    EXPECT_EQ(m_http.finished.size(), 2U);
    EXPECT_EQ(server.count(), 0);
}

TEST_F(HttpSessionTest, ReadsBodiesOneAfterTheOther) {
    HttpServer server;
    const QByteArray large(3'000'000, 'x');
    server.serve("/large", large);
    server.serve("/small", "small", 404);
    HttpSession session;
    EXPECT_TRUE(session.read().isEmpty());
    ASSERT_TRUE(session.open(url(server.host(), "/large")));
    EXPECT_EQ(session.status(), 200);
    EXPECT_EQ(readAll(session), large);
    EXPECT_EQ(outcome(), "200");
    ASSERT_TRUE(session.open(url(server.host(), "/small")));
    EXPECT_EQ(session.status(), 404);
    EXPECT_EQ(readAll(session), "small");
    EXPECT_TRUE(session.read().isEmpty());
    EXPECT_EQ(server.connections(), 1);
}

TEST_F(HttpSessionTest, EachRequestIsReportedOnceWhenItIsClosed) {
    HttpServer server;
    server.serve("/", "body");
    {
        HttpSession session;
        session.close("nothing was asked for");
        EXPECT_EQ(m_http.finished.size(), 0U);
        ASSERT_TRUE(session.open(url(server.host())));
        while (!session.read().isEmpty()) {
        }
        EXPECT_EQ(m_http.finished.size(), 0U);
        session.close("no picture");
        EXPECT_EQ(outcome(), "200, no picture");
        session.close("said already");
        EXPECT_EQ(m_http.finished.size(), 1U);
        ASSERT_TRUE(session.open(url(server.host())));
        ASSERT_TRUE(session.open(url(server.host())));
        EXPECT_EQ(m_http.finished.size(), 2U);
    }
    EXPECT_EQ(m_http.finished.size(), 3U);
    EXPECT_EQ(outcome(), "200");
}

TEST_F(HttpSessionTest, ABodyIsWholeWhenAllOfItWasRead) {
    struct Row {
        const char* what;
        FaultServer::Answer answer;
        bool whole;
    };
    const QByteArray digits = "0123456789";
    const Row rows[] = {
        {"whole", answers::respond(200, digits), true},
        {"empty", answers::respond(200, {}), true},
        {"chunks", answers::chunked(digits, 3), true},
        {"cut", answers::cut(digits, 5), false},
        {"chunks that break off", answers::chunked(digits, 3, false), false},
        {"stalled", answers::stall(digits), false},
    };
    ScopedHttp::waitBriefly();
    for (const Row& row : rows) {
        const FaultServer server(row.answer);
        HttpSession session;
        EXPECT_FALSE(session.bodyIsWhole()) << row.what;
        ASSERT_TRUE(session.open(url(server.host()))) << row.what;
        while (!session.read().isEmpty()) {
        }
        EXPECT_EQ(session.bodyIsWhole(), row.whole) << row.what;
    }
}

TEST_F(HttpSessionTest, AnAbandonedBodyDoesNotReachTheNextRequest) {
    FaultServer server(answers::respond(200, "second"));
    server.on("/first", answers::stall("first"));
    HttpSession session;
    ASSERT_TRUE(session.open(url(server.host(), "/first")));
    ASSERT_FALSE(session.read().isEmpty());
    ASSERT_TRUE(session.open(url(server.host(), "/second")));
    EXPECT_EQ(readAll(session), "second");
    EXPECT_EQ(server.connections(), 2);
}

TEST_F(HttpSessionTest, SpeaksNothingButHttp) {
    FaultServer server;
    HttpSession session;
    for (const char* scheme : {"ftp://", "gopher://", "smtp://", "telnet://", "dict://"}) {
        EXPECT_FALSE(session.open(QByteArray(scheme) + server.host().toUtf8() + "/"));
        EXPECT_THAT(outcome(), HasSubstr("not supported"));
    }
    EXPECT_FALSE(session.open("file:///etc/hostname"));
    EXPECT_THAT(outcome(), HasSubstr("not supported"));
    EXPECT_EQ(session.status(), 0);
    EXPECT_EQ(server.connections(), 0);
}

TEST_F(HttpSessionTest, EachWayOfNotConnectingIsTold) {
    HttpSession session;
    const RefusingPort refusing;
    EXPECT_FALSE(session.open(url(refusing.host())));
    EXPECT_TRUE(session.connectingFailed());
    EXPECT_FALSE(session.timedOut());
    EXPECT_THAT(outcome(), HasSubstr("connect to server"));

    ScopedHttp::waitBriefly();
    const DeafPort deaf;
    EXPECT_FALSE(session.open(url(deaf.host())));
    EXPECT_TRUE(session.connectingFailed());
    EXPECT_TRUE(session.timedOut());
    EXPECT_THAT(outcome(), testing::ContainsRegex("imeout|imed out"));

    for (const char* bad : {"http://", "http://:80/", "http://a%20b/", "http://a%2Fb/"}) {
        EXPECT_FALSE(session.open(bad)) << bad;
        EXPECT_TRUE(session.connectingFailed()) << bad;
        EXPECT_NE(outcome(), "") << bad;
    }
}

// The name lies in a zone that exists nowhere, so any resolver says so, or nothing in time.
TEST_F(HttpSessionTest, AnUnknownNameFailsToConnect) {
    HttpSession session;
    EXPECT_FALSE(session.open("http://radar.invalid/"));
    EXPECT_TRUE(session.connectingFailed());
    EXPECT_THAT(outcome(), testing::ContainsRegex("esolv"));
}

TEST_F(HttpSessionTest, RequestsGoThroughTheEnvironmentsProxy) {
    FaultServer proxy(answers::respond(200, "by proxy"));
    const QByteArray address = "http://" + proxy.host().toUtf8();
    const ScopedEnvironment http("http_proxy", address.constData());
    const ScopedEnvironment except("no_proxy", nullptr);
    const ScopedEnvironment exceptUpper("NO_PROXY", nullptr);
    HttpSession session;
    ASSERT_TRUE(session.open("http://radar.invalid/a"));
    EXPECT_EQ(readAll(session), "by proxy");
    ASSERT_EQ(proxy.requests().size(), 1U);
    EXPECT_TRUE(proxy.requests()[0].startsWith("GET http://radar.invalid/a HTTP/1.1\r\n"))
        << proxy.requests()[0].constData();
    // A server of this machine is asked itself, before and after others.
    FaultServer here(answers::respond(200, "from here"));
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(session.open("http://" + here.host().toUtf8() + "/a"));
        EXPECT_EQ(readAll(session), "from here");
        ASSERT_TRUE(session.open("http://radar.invalid/b"));
        EXPECT_EQ(readAll(session), "by proxy");
    }
}

TEST_F(HttpSessionTest, AProxyThatIsNotThereFailsToConnect) {
    const RefusingPort port;
    const QByteArray address = "http://" + port.host().toUtf8();
    const ScopedEnvironment http("http_proxy", address.constData());
    const ScopedEnvironment except("no_proxy", nullptr);
    const ScopedEnvironment exceptUpper("NO_PROXY", nullptr);
    HttpSession session;
    EXPECT_FALSE(session.open("http://radar.invalid/a"));
    EXPECT_TRUE(session.connectingFailed());
}

TEST_F(HttpSessionTest, TheHookIsCalledBeforeTheFirstByteWithTheGuardUp) {
    FaultServer server(answers::respond(200, "x"));
    int calls = 0;
    std::size_t requestsAtFirstCall = 99;
    bool guarded = true;
    httpHooks().waiting = [&] {
        if (++calls == 1) {
            requestsAtFirstCall = server.requests().size();
        }
        guarded = guarded && BusyGuard::active();
    };
    HttpSession session;
    ASSERT_TRUE(session.open(url(server.host())));
    EXPECT_EQ(readAll(session), "x");
    EXPECT_GE(calls, 1);
    EXPECT_EQ(requestsAtFirstCall, 0U);
    EXPECT_TRUE(guarded);
    EXPECT_FALSE(BusyGuard::active());
}

TEST_F(HttpSessionTest, TheHookIsCalledAgainAndAgainWhileTheServerIsSilent) {
    std::atomic<int> calls = 0;
    httpHooks().waiting = [&] { ++calls; };
    httpLimits().stallTime = seconds(20);
    FaultServer server([&](FaultConnection& to) {
        while (calls < 4 && to.pause(milliseconds(5))) {
        }
        to.send(answers::response(200, "at last"));
    });
    HttpSession session;
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(session.open(url(server.host())));
    // Three more calls after the first; generous, since the machine may be busy.
    EXPECT_LT(std::chrono::steady_clock::now() - start, seconds(5));
    EXPECT_EQ(readAll(session), "at last");
}

// A body that keeps coming leaves no time to wait, but the program is to repaint nevertheless.
TEST_F(HttpSessionTest, TheHookIsCalledWhileTheServerIsBusy) {
    std::atomic<int> calls = 0;
    httpHooks().waiting = [&] { ++calls; };
    FaultServer server([&](FaultConnection& to) {
        to.send("HTTP/1.1 200 OK\r\n\r\n");
        while (calls < 3 && to.send(QByteArray(4096, 'x'))) {
        }
        to.close();
    });
    HttpSession session;
    ASSERT_TRUE(session.open(url(server.host())));
    readAll(session);
    EXPECT_GE(calls, 3);
    EXPECT_EQ(outcome(), "200");
}

TEST_F(HttpSessionTest, InterimResponsesAreNotTheStatus) {
    FaultServer server(answers::raw(
        "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Early Hints\r\nLink: x\r\n\r\n" +
        answers::response(200, "final")
    ));
    HttpSession session;
    ASSERT_TRUE(session.open(url(server.host())));
    EXPECT_EQ(session.status(), 200);
    EXPECT_EQ(readAll(session), "final");
}

} // namespace
} // namespace raincast
