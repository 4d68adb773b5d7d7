// SPDX-License-Identifier: MIT
#include "net/byte_allowance.h"
#include "net/downloads.h"
#include "support/event_loop.h"
#include "support/fault_server.h"
#include "support/http_server.h"
#include "support/loopback.h"
#include "support/scoped_http.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <string>

namespace raincast {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::HasSubstr;

class DownloadsTest : public testing::Test {
protected:
    static QByteArray url(const QString& host, const char* path = "/") {
        return "http://" + host.toUtf8() + path;
    }
    HttpResponse get(const QByteArray& address) { return getFrom(m_downloads, address); }
    HttpResponse getFrom(Downloads& downloads, const QByteArray& address) {
        std::unique_ptr<Downloads::Download> download;
        return m_loop.resultOf<HttpResponse>([&](const Downloads::Done& done) {
            download = downloads.get({address}, done);
        });
    }
    static std::string outcome(const HttpResponse& response) {
        return outcomeOf(response).toStdString();
    }

    ScopedHttp m_http;
    EventLoop m_loop;
    Downloads m_downloads;
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

TEST_F(DownloadsTest, WithoutLibcurlEveryRequestFailsAtOnce) {
    HttpServer server;
    Downloads without(ConnectionManager::ofTheSystem(), []() -> const CurlLibrary* {
        return nullptr;
    });
    for (int i = 0; i < 2; ++i) {
        const HttpResponse response = getFrom(without, url(server.host()));
        EXPECT_EQ(response.status, 0);
        EXPECT_TRUE(response.body.isEmpty());
        EXPECT_EQ(outcome(response), "libcurl is not installed");
    }
    EXPECT_EQ(server.count(), 0);
}

TEST_F(DownloadsTest, BringsBodiesOneAfterTheOther) {
    HttpServer server;
    const auto connections = m_downloads.keepConnections();
    const QByteArray large(3'000'000, 'x');
    server.serve("/large", large);
    server.serve("/small", "small", 404);
    const HttpResponse first = get(url(server.host(), "/large"));
    EXPECT_EQ(first.status, 200);
    EXPECT_EQ(first.body, large);
    EXPECT_EQ(outcome(first), "200");
    const HttpResponse second = get(url(server.host(), "/small"));
    EXPECT_EQ(second.status, 404);
    EXPECT_EQ(second.body, "") << "it is no file";
    EXPECT_EQ(server.connections(), 1);
}

TEST_F(DownloadsTest, ABodyIsWholeWhenAllOfItCame) {
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
        const HttpResponse response = get(url(server.host()));
        EXPECT_TRUE(response.answered()) << row.what;
        EXPECT_EQ(response.whole, row.whole) << row.what;
    }
}

TEST_F(DownloadsTest, SpeaksNothingButHttp) {
    FaultServer server;
    for (const char* scheme : {"ftp://", "gopher://", "smtp://", "telnet://", "dict://"}) {
        const HttpResponse response = get(QByteArray(scheme) + server.host().toUtf8() + "/");
        EXPECT_FALSE(response.answered());
        EXPECT_THAT(outcome(response), HasSubstr("not supported"));
    }
    EXPECT_THAT(outcome(get("file:///etc/hostname")), HasSubstr("not supported"));
    EXPECT_EQ(server.connections(), 0);
}

TEST_F(DownloadsTest, EachWayOfNotConnectingIsTold) {
    const RefusingPort refusing;
    const HttpResponse refused = get(url(refusing.host()));
    EXPECT_FALSE(refused.answered());
    EXPECT_TRUE(refused.connectingFailed);
    EXPECT_FALSE(refused.timedOut);
    EXPECT_THAT(outcome(refused), HasSubstr("connect to server"));

    ScopedHttp::waitBriefly();
    const DeafPort deaf;
    const HttpResponse late = get(url(deaf.host()));
    EXPECT_TRUE(late.connectingFailed);
    EXPECT_TRUE(late.timedOut);
    EXPECT_THAT(outcome(late), testing::ContainsRegex("imeout|imed out"));

    for (const char* bad : {"http://", "http://:80/", "http://a%20b/", "http://a%2Fb/"}) {
        const HttpResponse response = get(bad);
        EXPECT_FALSE(response.answered()) << bad;
        EXPECT_TRUE(response.connectingFailed) << bad;
        EXPECT_NE(outcome(response), "") << bad;
    }
}

// The name lies in a zone that exists nowhere, so any resolver says so, or nothing in time.
TEST_F(DownloadsTest, AnUnknownNameFailsToConnect) {
    const HttpResponse response = get("http://radar.invalid/");
    EXPECT_TRUE(response.connectingFailed);
    EXPECT_THAT(outcome(response), testing::ContainsRegex("esolv"));
}

TEST_F(DownloadsTest, RequestsGoThroughTheEnvironmentsProxy) {
    FaultServer proxy(answers::respond(200, "by proxy"));
    const QByteArray address = "http://" + proxy.host().toUtf8();
    const ScopedEnvironment http("http_proxy", address.constData());
    const ScopedEnvironment except("no_proxy", nullptr);
    const ScopedEnvironment exceptUpper("NO_PROXY", nullptr);
    EXPECT_EQ(get("http://radar.invalid/a").body, "by proxy");
    ASSERT_EQ(proxy.requests().size(), 1U);
    EXPECT_TRUE(proxy.requests()[0].startsWith("GET http://radar.invalid/a HTTP/1.1\r\n"))
        << proxy.requests()[0].constData();
    // A server of this machine is asked itself, before and after others.
    FaultServer here(answers::respond(200, "from here"));
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(get(url(here.host(), "/a")).body, "from here");
        EXPECT_EQ(get("http://radar.invalid/b").body, "by proxy");
    }
}

TEST_F(DownloadsTest, AProxyThatIsNotThereFailsToConnect) {
    const RefusingPort port;
    const QByteArray address = "http://" + port.host().toUtf8();
    const ScopedEnvironment http("http_proxy", address.constData());
    const ScopedEnvironment except("no_proxy", nullptr);
    const ScopedEnvironment exceptUpper("NO_PROXY", nullptr);
    EXPECT_TRUE(get("http://radar.invalid/a").connectingFailed);
}

TEST_F(DownloadsTest, InterimResponsesAreNotTheStatus) {
    FaultServer server(answers::raw(
        "HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 103 Early Hints\r\nLink: x\r\n\r\n" +
        answers::response(200, "final")
    ));
    const HttpResponse response = get(url(server.host()));
    EXPECT_EQ(response.status, 200);
    EXPECT_EQ(response.body, "final");
}

TEST_F(DownloadsTest, ConnectionsAreKeptForAsLongAsSomebodyWantsThem) {
    FaultServer server(answers::respond(200, "x"));
    auto first = m_downloads.keepConnections();
    auto second = m_downloads.keepConnections();
    EXPECT_EQ(get(url(server.host(), "/1")).body, "x");
    first.reset();
    EXPECT_EQ(get(url(server.host(), "/2")).body, "x");
    EXPECT_EQ(server.connections(), 1);
    second.reset();
    EXPECT_TRUE(m_loop.until([&] { return server.openConnections() == 0; }));
    EXPECT_EQ(get(url(server.host(), "/3")).body, "x");
    EXPECT_EQ(server.connections(), 2);
}

/// Two that ask for the same at the same time.
TEST_F(DownloadsTest, WhatSeveralAskForIsFetchedOnce) {
    std::atomic<bool> go = false;
    FaultServer server([&go](FaultConnection& to) {
        while (!go && to.pause(milliseconds(5))) {
        }
        to.send(answers::response(200, "shared"));
    });
    const auto allowance = std::make_shared<ByteAllowance>();
    std::vector<QByteArray> bodies;
    const auto take = [&bodies](const HttpResponse& response) { bodies.push_back(response.body); };
    const QByteArray address = url(server.host());
    auto first = m_downloads.get({address}, take);
    EXPECT_TRUE(m_loop.until([&] { return server.requests().size() == 1; }));
    const auto second =
        m_downloads.get({address, DownloadOrder::Body::file, kAnyFile, allowance}, take);
    const auto other = m_downloads.get({address, DownloadOrder::Body::listing}, take);
    first.reset(); // the fetch goes on for the other one
    go = true;
    EXPECT_TRUE(m_loop.until([&] { return bodies.size() == 2; }));
    EXPECT_EQ(bodies, (std::vector<QByteArray>{"shared", "shared"}));
    EXPECT_EQ(server.requests().size(), 2U) << "the file, and the listing";
    EXPECT_EQ(get(address).body, "shared");
    EXPECT_EQ(server.requests().size(), 3U) << "nothing is kept";
}

TEST_F(DownloadsTest, ACancelledRequestMakesRoomForTheNext) {
    FaultServer server(answers::silence());
    server.on("/good", answers::respond(200, "good"));
    std::vector<std::unique_ptr<Downloads::Download>> silent;
    for (int i = 0; i < 10; ++i) {
        const QByteArray path = "/" + QByteArray::number(i);
        silent.push_back(m_downloads.get({url(server.host(), path.constData())}, [](const auto&) {
            FAIL() << "it was cancelled";
        }));
    }
    silent.clear();
    EXPECT_EQ(get(url(server.host(), "/good")).body, "good");
    EXPECT_LE(server.requests().size(), 11U);
}

TEST_F(DownloadsTest, TheEndTakesNoTimeWhateverRuns) {
    FaultServer server(answers::silence());
    const DeafPort deaf;
    for (const QString& host : {server.host(), deaf.host(), QString("radar.invalid")}) {
        std::vector<std::unique_ptr<Downloads::Download>> all;
        auto downloads = std::make_unique<Downloads>();
        for (int i = 0; i < 10; ++i) {
            const QByteArray path = "/" + QByteArray::number(i);
            all.push_back(downloads->get({url(host, path.constData())}, [](const auto&) {}));
        }
        getFrom(m_downloads, url(RefusingPort().host())); // some events
        const auto start = std::chrono::steady_clock::now();
        all.clear();
        downloads.reset();
        EXPECT_LT(std::chrono::steady_clock::now() - start, milliseconds(200))
            << host.toStdString();
    }
}

} // namespace
} // namespace raincast
