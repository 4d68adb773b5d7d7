// SPDX-License-Identifier: MIT
// Talks to the server as no library would: byte by byte, wrongly, slowly, and many at a time.
#include "http/web_server.h"
#include "support/loopback.h"
#include "support/raw_client.h"

#include <gmock/gmock.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace raincast {
namespace {

using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
using namespace std::chrono_literals;

constexpr int kBigBytes = 8 * 1024 * 1024;

int countOf(const std::string& text, const std::string& part) {
    int count = 0;
    for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

class WebServerTest : public ::testing::Test {
protected:
    ~WebServerTest() override { m_server.reset(); }

    void start(const WebServer::Limits& limits) {
        m_server = std::make_unique<WebServer>(
            [this](const HttpRequest& request, const HttpReply& reply) { answer(request, reply); },
            limits
        );
        ASSERT_TRUE(m_server->start("127.0.0.1", 0));
    }
    void start() { start({}); }

    /// The last request that was answered.
    HttpRequest last() {
        const std::lock_guard lock(m_mutex);
        return m_last;
    }
    /// "/later" waits for answerLater(), "/never" is forgotten.
    void answer(const HttpRequest& request, const HttpReply& reply) {
        {
            const std::lock_guard lock(m_mutex);
            m_last = request;
            if (request.path == "/later") {
                m_later.push_back(reply);
                m_changed.notify_all();
                return;
            }
        }
        if (request.path == "/big") {
            reply.send({200, QByteArray(kBigBytes, 'x'), {}});
        } else if (request.path == "/page") {
            reply.send({200, "hello", {{"Cache-Control", "no-cache"}}});
        } else if (request.path != "/never") {
            reply.send({404, {}, {}});
        }
    }

    /// Waits until so many have asked for "/later".
    void awaitLater(std::size_t count) {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [&] { return m_later.size() >= count; });
    }
    void answerLater() {
        const std::lock_guard lock(m_mutex);
        for (const HttpReply& reply : m_later) {
            reply.send({200, "later", {}});
        }
        m_later.clear();
    }

    [[nodiscard]] RawClient connect(int from = 1) const {
        return RawClient(m_server->port(), from);
    }
    [[nodiscard]] std::string ask(const std::string& request) const {
        const RawClient client = connect();
        client.send(request);
        return client.readAll();
    }
    [[nodiscard]] std::string
    get(const std::string& target, const std::string& headers = "", int from = 1) const {
        const RawClient client = connect(from);
        client.send("GET " + target + " HTTP/1.1\r\nConnection: close\r\n" + headers + "\r\n");
        return client.readAll();
    }
    /// A connection that has been answered and is idle now.
    [[nodiscard]] RawClient idle(int from = 1) const {
        RawClient client = connect(from);
        client.send("GET /page HTTP/1.1\r\n\r\n");
        EXPECT_THAT(client.readUntil("hello"), EndsWith("hello"));
        return client;
    }

    static WebServer::Limits quick() {
        WebServer::Limits limits;
        limits.idle = 60ms;
        limits.request = 120ms;
        limits.answer = 120ms;
        return limits;
    }

    std::mutex m_mutex;
    std::condition_variable m_changed;
    HttpRequest m_last;
    std::vector<HttpReply> m_later;
    std::unique_ptr<WebServer> m_server;
};

TEST_F(WebServerTest, Answers) {
    start();
    EXPECT_THAT(
        get("/page?a=/../b", "If-None-Match: x\r\n"),
        AllOf(
            StartsWith("HTTP/1.1 200"), EndsWith("\r\n\r\nhello"), HasSubstr("Content-Length: 5"),
            HasSubstr("Cache-Control: no-cache"), HasSubstr("Date: ")
        )
    );
    EXPECT_EQ(last().method, "GET");
    EXPECT_EQ(last().path, "/page");
    EXPECT_EQ(last().query, "a=/../b");
    EXPECT_EQ(last().header("if-none-match"), "x");
    EXPECT_EQ(m_server->counts().requests, 1U);
}

TEST_F(WebServerTest, UnderstandsEveryFormOfATarget) {
    start();
    for (const char* target :
         {"/page", "/page?", "/page?q?r", "http://127.0.0.1/page", "HTTP://radar.home:8155/page?a",
          "/%70age"}) {
        EXPECT_THAT(get(target), EndsWith("hello")) << target;
    }
    EXPECT_THAT(get("/?q?r"), StartsWith("HTTP/1.1 404"));
    EXPECT_EQ(last().path, "/");
    EXPECT_EQ(last().query, "q?r");
    EXPECT_THAT(get("http://127.0.0.1"), StartsWith("HTTP/1.1 404"));
    EXPECT_EQ(last().path, "/");
    EXPECT_THAT(get("/page%00"), StartsWith("HTTP/1.1 404"));
    EXPECT_EQ(last().path, std::string("/page\0", 6));
}

TEST_F(WebServerTest, HeadGivesNoBody) {
    start();
    EXPECT_THAT(
        ask("HEAD /page HTTP/1.1\r\nConnection: close\r\n\r\n"),
        AllOf(StartsWith("HTTP/1.1 200"), HasSubstr("Content-Length: 5"), EndsWith("\r\n\r\n"))
    );
    // Nor does it stay behind for the next answer.
    EXPECT_THAT(
        ask("HEAD /page HTTP/1.1\r\n\r\nGET /page HTTP/1.1\r\nConnection: close\r\n\r\n"),
        AllOf(HasSubstr("\r\n\r\nHTTP/1.1 200"), EndsWith("hello"))
    );
}

TEST_F(WebServerTest, TheHandlerSeesEveryMethod) {
    start();
    for (const char* method : {"POST", "PUT", "DELETE", "OPTIONS", "PATCH", "TRACE", "STRANGE"}) {
        EXPECT_THAT(
            ask(std::string(method) + " /page HTTP/1.1\r\nConnection: close\r\n\r\n"),
            EndsWith("hello")
        ) << method;
        EXPECT_EQ(last().method, method);
    }
}

TEST_F(WebServerTest, ABodyEndsTheConnection) {
    start();
    const std::string hidden = "GET /big HTTP/1.1\r\n\r\n";
    const std::string length = std::to_string(hidden.size());
    for (const std::string& headers :
         {"Content-Length: " + length, std::string("Transfer-Encoding: chunked"),
          "Content-Length: " + length + "\r\nTransfer-Encoding: chunked",
          "Content-Length: 0\r\nContent-Length: " + length,
          std::string("Transfer-Encoding: nonsense"), std::string("content-length:0")}) {
        for (const char* method : {"GET", "POST", "HEAD"}) {
            const std::string answer =
                ask(method + (" /page HTTP/1.1\r\n" + headers + "\r\n\r\n" + hidden));
            EXPECT_EQ(countOf(answer, "HTTP/1.1"), 1) << method << ' ' << headers;
            EXPECT_EQ(last().path, "/page");
        }
    }
}

// The answer does not depend on a body that never comes.
TEST_F(WebServerTest, ABodyIsNotWaitedFor) {
    start();
    const RawClient client = connect();
    client.send("GET /page HTTP/1.1\r\nContent-Length: 100000\r\n\r\n");
    EXPECT_THAT(client.readAll(), EndsWith("hello"));
}

TEST_F(WebServerTest, RequestsFollowEachOtherOnOneConnection) {
    start();
    EXPECT_THAT(
        ask("GET /page HTTP/1.1\r\n\r\nGET /page HTTP/1.1\r\n\r\n"
            "GET /no HTTP/1.1\r\nConnection: close\r\n\r\n"),
        AllOf(HasSubstr("helloHTTP/1.1 200"), HasSubstr("helloHTTP/1.1 404"))
    );
}

TEST_F(WebServerTest, AConnectionHasSoManyRequests) {
    WebServer::Limits limits;
    limits.requestsPerConnection = 2;
    start(limits);
    const std::string request = "GET /page HTTP/1.1\r\n\r\n";
    EXPECT_THAT(ask(request + request + request), HasSubstr("Connection: close"));
    EXPECT_EQ(m_server->counts().requests, 2U);
}

// Behind a proxy that keeps connections, the rest of a bad request is not the next one.
TEST_F(WebServerTest, NonsenseEndsTheConnection) {
    start();
    const std::string next = "GET /page HTTP/1.1\r\n\r\n";
    for (const char* bytes :
         {"GET\r\n\r\n", "\xFF\xFE / HTTP/9.9\r\n\r\n", "a b c d e\r\n\r\n",
          "GET /page HTTP/1.1\r\nno colon\r\n\r\n", "GET /page HTTP/1.1\r\n: no name\r\n\r\n",
          "GET /page HTTP/1.1\r\n folded\r\n\r\n", "GET /page HTTP/1.1\r\nHost: a\r \nb: c\r\n\r\n",
          "GET /page HTTP/1.1\r\nHost: a\r\nb\x01: c\r\n\r\n",
          "GET /page HTTP/1.1\r\nHost: a\r\nb: c\x01\r\n\r\n",
          "GET /page HTTP/1.1\r\nContent-Length: x\r\n\r\n",
          "GET /page HTTP/1.1\r\nContent-Length : 5\r\n\r\n", "GET /page HTTP/2.0\r\n\r\n",
          "GET /page HTTQ/1.1\r\n\r\n"}) {
        const std::string answer = ask(bytes + next + next);
        EXPECT_THAT(answer, ::testing::AnyOf("", ContainsRegex("^HTTP/1\\.[01] (400|505) ")))
            << bytes;
        EXPECT_THAT(answer, Not(HasSubstr("hello"))) << bytes;
    }
    EXPECT_EQ(m_server->counts().requests, 0U);
}

TEST_F(WebServerTest, NullBytesDoNoHarm) {
    start();
    using namespace std::string_literals;
    for (const std::string& bytes :
         {std::string(3000, '\0') + "\r\n\r\n", "GET /\0 HTTP/1.1\r\n\r\n"s,
          "GET / HTTP/1.1\r\n\0: \0\r\n\r\n"s}) {
        EXPECT_THAT(
            ask(bytes + "GET / HTTP/1.1\r\nConnection: close\r\n\r\n"), StartsWith("HTTP/1.1 4")
        );
    }
    EXPECT_THAT(get("/page"), EndsWith("hello"));
}

TEST_F(WebServerTest, OverlongRequestsAreRefused) {
    start();
    EXPECT_THAT(
        ask("GET /" + std::string(100'000, 'a') + " HTTP/1.1\r\n\r\n"),
        AnyOf(StartsWith("HTTP/1.1 431"), StartsWith("HTTP/1.1 414"))
    );
    const auto headersOf = [](int count) {
        std::string headers;
        for (int i = 0; i < count; ++i) {
            headers += "X-" + std::to_string(i) + ": y\r\n";
        }
        return headers;
    };
    EXPECT_THAT(get("/page", headersOf(3000)), StartsWith("HTTP/1.1 431"));
    EXPECT_THAT(
        get("/page", "X: " + std::string(16'384, 'x') + "\r\n"), StartsWith("HTTP/1.1 431")
    );
    EXPECT_THAT(get("/page", "X: " + std::string(16'000, 'x') + "\r\n"), EndsWith("hello"));
    EXPECT_THAT(get("/page", headersOf(100)), EndsWith("hello"));
    EXPECT_THAT(get("/page?" + std::string(8000, 'x')), EndsWith("hello"));
}

TEST_F(WebServerTest, ManyRangesDoNotMakeALargeAnswer) {
    start();
    std::string ranges = "Range: bytes=0-";
    for (int i = 0; i < 1000; ++i) {
        ranges += ",0-";
    }
    EXPECT_LT(get("/page", ranges + "\r\n").size(), 1000U);
}

TEST_F(WebServerTest, SlowRequestsEnd) {
    start(quick());
    const RawClient client = connect();
    client.send("GET /page HTTP/1.1\r\nX-Slow: ");
    // Ended by the server, with or without an answer; a server that waits would hang the test.
    EXPECT_THAT(client.readAll(), Not(HasSubstr("hello")));
}

/// Sends to a client's socket, byte by byte, until the server hangs up.
class Trickle {
public:
    Trickle(const RawClient& client, std::string piece)
        : m_thread([&client, piece = std::move(piece)](const std::stop_token& stop) {
              std::size_t at = 0;
              while (!stop.stop_requested()) {
                  client.send(piece.substr(at++ % piece.size(), 1));
                  std::this_thread::yield();
              }
          }) {}

private:
    std::jthread m_thread;
};

TEST_F(WebServerTest, TrickledRequestsEnd) {
    WebServer::Limits limits = quick();
    limits.requestBytes = 64 * 1024 * 1024; // time alone ends it
    start(limits);
    for (const char* begin :
         {"", "GET /page HTTP/1.1\r\n", "GET /page HTTP/1.1\r\n\r\nGET /page"}) {
        const auto began = std::chrono::steady_clock::now();
        const RawClient client = connect();
        client.send(begin);
        const Trickle trickle(client, *begin == '\0' ? "\r\n" : "a: b\r\n");
        EXPECT_TRUE(client.isHungUpOn()) << begin;
        EXPECT_LT(std::chrono::steady_clock::now() - began, 30s);
    }
}

TEST_F(WebServerTest, IdleConnectionsEnd) {
    start(quick());
    EXPECT_EQ(connect().readAll(), "");
    EXPECT_EQ(idle().readAll(), "");
}

TEST_F(WebServerTest, ClientsThatDoNotReadAreLetGo) {
    start(quick());
    const RawClient client = connect();
    client.bufferLittle();
    client.send("GET /big HTTP/1.1\r\n\r\n");
    EXPECT_TRUE(client.isReset());
    EXPECT_LT(client.readAll().size(), std::size_t{kBigBytes});
}

TEST_F(WebServerTest, LargeAnswersArriveWhole) {
    start();
    EXPECT_THAT(get("/big").size(), ::testing::Gt(std::size_t{kBigBytes}));
}

TEST_F(WebServerTest, AnswersMayComeLater) {
    start();
    std::vector<RawClient> clients;
    for (int i = 0; i < 20; ++i) {
        clients.push_back(connect());
        clients.back().send("GET /later HTTP/1.1\r\n\r\n");
    }
    awaitLater(clients.size());
    // The others are served meanwhile.
    EXPECT_THAT(get("/page"), EndsWith("hello"));
    answerLater();
    for (const RawClient& client : clients) {
        EXPECT_THAT(client.readUntil("later"), StartsWith("HTTP/1.1 200"));
        client.send("GET /page HTTP/1.1\r\n\r\n");
        EXPECT_THAT(client.readUntil("hello"), EndsWith("hello"));
    }
}

TEST_F(WebServerTest, ForgottenAnswersAreErrors) {
    start();
    EXPECT_THAT(get("/never"), StartsWith("HTTP/1.1 500"));
}

TEST_F(WebServerTest, AnswersThatTakeTooLongAreErrors) {
    WebServer::Limits limits;
    limits.making = 10ms;
    start(limits);
    EXPECT_THAT(get("/later"), AllOf(StartsWith("HTTP/1.1 503"), HasSubstr("Retry-After")));
    answerLater(); // nobody wants it, and nobody else gets it
    EXPECT_THAT(get("/page"), EndsWith("hello"));
}

TEST_F(WebServerTest, TheAnswerToAClientThatResetsIsNotWanted) {
    start();
    {
        const RawClient client = connect();
        client.send("GET /later HTTP/1.1\r\n\r\n");
        awaitLater(1);
        client.resetOnClose();
    }
    const auto isWanted = [this] {
        const std::lock_guard lock(m_mutex);
        return m_later.front().isWanted();
    };
    while (isWanted()) { // or the test's deadline comes
        std::this_thread::yield();
    }
    answerLater();
    EXPECT_THAT(get("/page"), EndsWith("hello"));
}

// As "nc" does, or a script.
TEST_F(WebServerTest, AClientThatHasSentAllIsAnswered) {
    start();
    const RawClient client = connect();
    client.send("GET /later HTTP/1.1\r\nConnection: close\r\n\r\n");
    client.endSending();
    awaitLater(1);
    answerLater();
    EXPECT_THAT(client.readAll(), EndsWith("later"));
}

TEST_F(WebServerTest, ConnectionsBeyondTheLimitAreToldSo) {
    WebServer::Limits limits;
    limits.connections = 3;
    start(limits);
    std::vector<RawClient> holders;
    for (int from = 1; from <= 3; ++from) {
        holders.push_back(connect(from));
        holders.back().send("GET /later HTTP/1.1\r\nConnection: close\r\n\r\n");
    }
    awaitLater(3);
    EXPECT_THAT(get("/page", "", 4), StartsWith("HTTP/1.1 503"));
    EXPECT_EQ(m_server->counts().refused, 1U);
    // Those that hold one are served on, and a place that is given up is free again.
    answerLater();
    for (const RawClient& holder : holders) {
        EXPECT_THAT(holder.readAll(), EndsWith("later"));
    }
    EXPECT_THAT(get("/page", "", 4), EndsWith("hello"));
    EXPECT_EQ(m_server->counts().displaced, 0U);
}

TEST_F(WebServerTest, IdleConnectionsMakeRoom) {
    WebServer::Limits limits;
    limits.connections = 2;
    start(limits);
    const RawClient first = idle(2);
    const RawClient second = idle(3);
    EXPECT_THAT(get("/page", "", 4), EndsWith("hello"));
    EXPECT_EQ(first.readAll(), "");
    EXPECT_EQ(m_server->counts().displaced, 1U);
    EXPECT_EQ(m_server->counts().refused, 0U);
    second.send("GET /page HTTP/1.1\r\n\r\n");
    EXPECT_THAT(second.readUntil("hello"), EndsWith("hello"));
}

TEST_F(WebServerTest, SlowConnectionsMakeRoom) {
    WebServer::Limits limits;
    limits.connections = 1;
    limits.slow = 0ms;
    start(limits);
    const RawClient reader = connect(2);
    reader.bufferLittle();
    reader.send("GET /big HTTP/1.1\r\n\r\n");
    EXPECT_THAT(reader.readUntil("\r\n\r\n"), StartsWith("HTTP/1.1 200"));
    EXPECT_THAT(get("/page", "", 3), EndsWith("hello"));
    EXPECT_TRUE(reader.isReset());
    const RawClient writer = connect(2);
    writer.send("GET /pa");
    EXPECT_THAT(get("/page", "", 3), EndsWith("hello"));
    EXPECT_TRUE(writer.isHungUpOn());
    EXPECT_EQ(m_server->counts().displaced, 2U);
}

TEST_F(WebServerTest, AClientWithManyBusyConnectionsMakesRoom) {
    WebServer::Limits limits;
    limits.connections = 4;
    start(limits);
    std::vector<RawClient> holders;
    for (std::size_t i = 0; i < 4; ++i) {
        holders.push_back(connect(i < 2 ? 2 : 3));
        holders.back().send("GET /later HTTP/1.1\r\nConnection: close\r\n\r\n");
        awaitLater(i + 1);
    }
    EXPECT_THAT(get("/page", "", 4), EndsWith("hello"));
    EXPECT_TRUE(holders[0].isHungUpOn());
    {
        const std::lock_guard lock(m_mutex);
        EXPECT_FALSE(m_later[0].isWanted());
        EXPECT_TRUE(m_later[1].isWanted());
    }
    answerLater();
    for (std::size_t i = 1; i < 4; ++i) {
        EXPECT_THAT(holders[i].readAll(), EndsWith("later"));
    }
}

TEST_F(WebServerTest, OneClientDoesNotTakeAllConnections) {
    WebServer::Limits limits;
    limits.connectionsPerClient = 1;
    start(limits);
    const RawClient holder = connect();
    holder.send("GET /later HTTP/1.1\r\n\r\n");
    awaitLater(1);
    EXPECT_THAT(get("/page"), StartsWith("HTTP/1.1 503"));
    EXPECT_THAT(get("/page", "", 2), EndsWith("hello"));
}

TEST_F(WebServerTest, ManyClientsAtOnceAreServed) {
    WebServer::Limits limits;
    limits.connections = 200;
    limits.connectionsPerClient = 200;
    start(limits);
    std::atomic<int> served = 0;
    std::vector<std::thread> clients;
    for (int i = 0; i < 16; ++i) {
        clients.emplace_back([this, &served] {
            for (int j = 0; j < 25; ++j) {
                served += get("/page").ends_with("hello") ? 1 : 0;
            }
        });
    }
    for (std::thread& client : clients) {
        client.join();
    }
    EXPECT_EQ(served, 400);
}

TEST_F(WebServerTest, StoppingWaitsForNobody) {
    start();
    const RawClient quiet = idle();
    const RawClient half = connect();
    half.send("GET /pa");
    const RawClient waiting = connect();
    waiting.send("GET /later HTTP/1.1\r\n\r\n");
    const RawClient reading = connect();
    reading.send("GET /big HTTP/1.1\r\n\r\n");
    awaitLater(1);
    m_server->stop();
    EXPECT_EQ(quiet.readAll(), "");
    EXPECT_EQ(waiting.readAll(), "");
    m_server.reset();
    answerLater();
}

TEST_F(WebServerTest, APortInUseCannotBeHad) {
    start();
    WebServer other([](const auto&, const auto&) {}, {});
    const auto errorOf = [&other](const char* address, int port) {
        errno = 0;
        return other.start(address, port) ? 0 : errno;
    };
    EXPECT_EQ(errorOf("127.0.0.1", m_server->port()), EADDRINUSE);
    EXPECT_EQ(errorOf("192.0.2.1", 0), EADDRNOTAVAIL);
}

TEST_F(WebServerTest, ServesIpVersion6) {
    WebServer server([](const auto&, const HttpReply& reply) { reply.send({200, "six", {}}); }, {});
    if (!RawClient::hasIpVersion6()) {
        GTEST_SKIP() << "This machine has no IPv6 loopback.";
    }
    ASSERT_TRUE(server.start("::1", 0));
    const RawClient client = RawClient::overIpVersion6(server.port());
    client.send("GET / HTTP/1.1\r\nConnection: close\r\n\r\n");
    EXPECT_THAT(client.readAll(), AllOf(StartsWith("HTTP/1.1 200"), EndsWith("\r\n\r\nsix")));
}

TEST_F(WebServerTest, ANameIsAnAddress) {
    WebServer server([](const auto&, const HttpReply& reply) { reply.send({}); }, {});
    EXPECT_TRUE(server.start("localhost", 0));
    EXPECT_GT(server.port(), 0);
}

} // namespace
} // namespace raincast
