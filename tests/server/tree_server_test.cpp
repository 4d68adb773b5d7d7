// SPDX-License-Identifier: MIT
// Talks to the server as no library would: byte by byte, wrongly, slowly, and many at a time.
#include "net/http_transfer.h"
#include "server/tree_server.h"
#include "support/files.h"
#include "support/loopback.h"
#include "support/scoped_http.h"

#include <QTemporaryDir>

#include <arpa/inet.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <thread>

namespace raincast {
namespace {

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// One connection, in raw bytes. Reading waits for at most ten seconds.
class RawClient {
public:
    explicit RawClient(int port) : m_socket(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<std::uint16_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        const timeval limit{10, 0};
        setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    }
    ~RawClient() { close(m_socket); }
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    void send(const std::string& bytes) const {
        ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    }

    /// Everything until the server closes the connection.
    [[nodiscard]] std::string readAll() const {
        std::string all;
        char piece[4096];
        for (ssize_t count = 0; (count = recv(m_socket, piece, sizeof piece, 0)) > 0;) {
            all.append(piece, static_cast<std::size_t>(count));
        }
        return all;
    }

    /// Everything until a text has come.
    [[nodiscard]] std::string readUntil(const std::string& text) const {
        std::string all;
        char byte = 0;
        while (all.find(text) == std::string::npos && recv(m_socket, &byte, 1, 0) == 1) {
            all += byte;
        }
        return all;
    }

private:
    int m_socket;
};

class TreeServerTest : public ::testing::Test {
protected:
    void start(const TreeServer::Limits& limits) {
        m_server = std::make_unique<TreeServer>(
            [this](std::string_view path) -> std::optional<TreeAnswer> {
                m_lastPath = std::string(path);
                if (path == "/big") {
                    return TreeAnswer{QByteArray(8 * 1024 * 1024, 'x'), "image/gif", 60};
                }
                return path == "/page" ? std::optional(TreeAnswer{"hello"}) : std::nullopt;
            },
            limits
        );
        ASSERT_TRUE(m_server->start("127.0.0.1", 0));
    }
    void start() { start({}); }

    [[nodiscard]] std::string ask(const std::string& request) const {
        const RawClient client(m_server->port());
        client.send(request);
        return client.readAll();
    }
    [[nodiscard]] std::string
    get(const std::string& target, const std::string& headers = "") const {
        return ask("GET " + target + " HTTP/1.1\r\nConnection: close\r\n" + headers + "\r\n");
    }

    static TreeServer::Limits quick() {
        TreeServer::Limits limits;
        limits.idle = std::chrono::milliseconds(60);
        limits.request = std::chrono::milliseconds(120);
        limits.answer = std::chrono::milliseconds(120);
        return limits;
    }

    std::string m_lastPath;
    std::unique_ptr<TreeServer> m_server;
};

TEST_F(TreeServerTest, Answers) {
    start();
    EXPECT_THAT(
        get("/page"),
        AllOf(
            StartsWith("HTTP/1.1 200"), EndsWith("\r\n\r\nhello"), HasSubstr("Content-Length: 5"),
            HasSubstr("text/html"), HasSubstr("no-cache")
        )
    );
    EXPECT_EQ(m_server->counts().requests, 1U);
}

TEST_F(TreeServerTest, TheQueryDoesNotCount) {
    start();
    EXPECT_THAT(get("/page?a=/../b"), EndsWith("hello"));
    EXPECT_EQ(m_lastPath, "/page");
}

TEST_F(TreeServerTest, HeadGivesNoBody) {
    start();
    EXPECT_THAT(
        ask("HEAD /page HTTP/1.1\r\nConnection: close\r\n\r\n"),
        AllOf(StartsWith("HTTP/1.1 200"), HasSubstr("Content-Length: 5"), EndsWith("\r\n\r\n"))
    );
}

TEST_F(TreeServerTest, WhatIsNotInTheTreeIsNotFound) {
    start();
    for (const char* target :
         {"/", "/../../etc/passwd", "/%2e%2e/%2e%2e/etc/passwd", "/page/../../etc/passwd",
          "/..%2f..%2fetc%2fpasswd", "/page%00", "/%", "/%zz", "//page", "/\\..\\page",
          "http://127.0.0.1/page/.."}) {
        EXPECT_THAT(get(target), StartsWith("HTTP/1.1 404")) << target;
    }
    EXPECT_EQ(m_server->counts().notFound, 11U);
}

TEST_F(TreeServerTest, OnlyReadsAreAllowed) {
    start();
    for (const char* method : {"POST", "PUT", "DELETE", "OPTIONS", "PATCH", "CONNECT", "TRACE"}) {
        const std::string answer =
            ask(std::string(method) + " /page HTTP/1.1\r\nConnection: close\r\n\r\n");
        EXPECT_THAT(answer, AllOf(StartsWith("HTTP/1.1 405"), HasSubstr("Allow: GET, HEAD")))
            << method;
    }
}

TEST_F(TreeServerTest, ABodyEndsTheConnection) {
    start();
    const std::string hidden = "GET /big HTTP/1.1\r\n\r\n";
    const std::string answer =
        ask("GET /page HTTP/1.1\r\nContent-Length: " + std::to_string(hidden.size()) + "\r\n\r\n" +
            hidden);
    EXPECT_THAT(answer, EndsWith("hello"));
    EXPECT_EQ(m_server->counts().requests, 1U);
}

TEST_F(TreeServerTest, RequestsFollowEachOtherOnOneConnection) {
    start();
    EXPECT_THAT(
        ask("GET /page HTTP/1.1\r\n\r\nGET /page HTTP/1.1\r\n\r\n"
            "GET /no HTTP/1.1\r\nConnection: close\r\n\r\n"),
        AllOf(HasSubstr("helloHTTP/1.1 200"), HasSubstr("helloHTTP/1.1 404"))
    );
}

TEST_F(TreeServerTest, AConnectionHasSoManyRequests) {
    TreeServer::Limits limits;
    limits.requestsPerConnection = 2;
    start(limits);
    const std::string request = "GET /page HTTP/1.1\r\n\r\n";
    EXPECT_THAT(ask(request + request + request), HasSubstr("Connection: close"));
    EXPECT_EQ(m_server->counts().requests, 2U);
}

TEST_F(TreeServerTest, NonsenseIsAnsweredOrHungUpOn) {
    start(quick());
    for (const std::string& bytes :
         {std::string("\r\n\r\n"), std::string("GET\r\n\r\n"), std::string("GET /page\r\n\r\n"),
          std::string(3000, '\0') + "\r\n\r\n", std::string("\xFF\xFE\x00 / HTTP/9.9\r\n\r\n", 18),
          std::string("GET /page HTTP/1.1\r\nno colon\r\n\r\n")}) {
        const RawClient client(m_server->port());
        client.send(bytes);
        static_cast<void>(client.readAll());
    }
    EXPECT_THAT(get("/page"), EndsWith("hello"));
}

TEST_F(TreeServerTest, OverlongRequestsAreRefused) {
    start();
    EXPECT_THAT(
        ask("GET /" + std::string(100'000, 'a') + " HTTP/1.1\r\n\r\n"),
        AnyOf(StartsWith("HTTP/1.1 431"), StartsWith("HTTP/1.1 414"))
    );
    std::string headers;
    for (int i = 0; i < 3000; ++i) {
        headers += "X-" + std::to_string(i) + ": y\r\n";
    }
    EXPECT_THAT(
        get("/page", headers), AnyOf(StartsWith("HTTP/1.1 431"), StartsWith("HTTP/1.1 400"))
    );
    EXPECT_THAT(get("/page", "X: " + std::string(5000, 'x') + "\r\n"), EndsWith("hello"));
}

TEST_F(TreeServerTest, ManyRangesDoNotMakeALargeAnswer) {
    start();
    std::string ranges = "Range: bytes=0-";
    for (int i = 0; i < 1000; ++i) {
        ranges += ",0-";
    }
    const std::string answer = get("/page", ranges + "\r\n");
    EXPECT_LT(answer.size(), 1000U);
}

TEST_F(TreeServerTest, SlowRequestsEnd) {
    start(quick());
    const RawClient client(m_server->port());
    client.send("GET /page HTTP/1.1\r\nX-Slow: ");
    // Ended by the server, with or without an answer; a server that waits would hang the test.
    EXPECT_THAT(client.readAll(), ::testing::Not(HasSubstr("hello")));
}

TEST_F(TreeServerTest, IdleConnectionsEnd) {
    start(quick());
    EXPECT_EQ(RawClient(m_server->port()).readAll(), "");
}

TEST_F(TreeServerTest, ClientsThatDoNotReadAreLetGo) {
    start(quick());
    const RawClient client(m_server->port());
    client.send("GET /big HTTP/1.1\r\n\r\n");
    m_server->stop(); // waits for the connection's thread
    EXPECT_LT(client.readAll().size(), 8U * 1024 * 1024);
}

TEST_F(TreeServerTest, LargeAnswersArriveWhole) {
    start();
    EXPECT_THAT(get("/big").size(), ::testing::Gt(8U * 1024 * 1024));
}

TEST_F(TreeServerTest, ConnectionsBeyondTheLimitAreToldSo) {
    TreeServer::Limits limits;
    limits.connections = 3;
    start(limits);
    std::vector<std::unique_ptr<RawClient>> holders;
    for (int i = 0; i < 3; ++i) {
        holders.push_back(std::make_unique<RawClient>(m_server->port()));
        holders.back()->send("GET /page HTTP/1.1\r\n\r\n");
        EXPECT_THAT(holders.back()->readUntil("hello"), EndsWith("hello"));
    }
    EXPECT_THAT(get("/page"), StartsWith("HTTP/1.1 503"));
    EXPECT_EQ(m_server->counts().refused, 1U);
    // Those that hold one are served on, and a place that is given up is free again.
    holders[0]->send("GET /page HTTP/1.1\r\nConnection: close\r\n\r\n");
    EXPECT_THAT(holders[0]->readAll(), EndsWith("hello"));
    std::string answer;
    while (!answer.ends_with("hello")) {
        answer = get("/page");
    }
}

TEST_F(TreeServerTest, OneClientDoesNotTakeAllConnections) {
    TreeServer::Limits limits;
    limits.connectionsPerAddress = 1;
    start(limits);
    const RawClient holder(m_server->port());
    holder.send("GET /page HTTP/1.1\r\n\r\n");
    EXPECT_THAT(holder.readUntil("hello"), EndsWith("hello"));
    EXPECT_THAT(get("/page"), StartsWith("HTTP/1.1 503"));
}

TEST_F(TreeServerTest, ManyClientsAtOnceAreServed) {
    TreeServer::Limits limits;
    limits.connections = 200;
    limits.connectionsPerAddress = 200;
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

TEST_F(TreeServerTest, StoppingWaitsForNoClient) {
    start();
    const RawClient idle(m_server->port());
    const RawClient half(m_server->port());
    half.send("GET /pa");
    idle.send("GET /page HTTP/1.1\r\n\r\n");
    EXPECT_THAT(idle.readUntil("hello"), EndsWith("hello"));
    m_server->stop();
    EXPECT_EQ(idle.readAll(), "");
}

TEST_F(TreeServerTest, APortInUseCannotBeHad) {
    start();
    TreeServer other([](std::string_view) { return std::nullopt; });
    EXPECT_FALSE(other.start("127.0.0.1", static_cast<std::uint16_t>(m_server->port())));
    EXPECT_FALSE(other.start("192.0.2.1", 0));
}

TEST_F(TreeServerTest, ServesIpVersion6) {
    TreeServer server([](std::string_view) { return TreeAnswer{"six"}; });
    if (!server.start("::1", 0)) {
        GTEST_SKIP() << "This machine has no IPv6 loopback.";
    }
    EXPECT_GT(server.port(), 0);
}

TEST_F(TreeServerTest, TheViewersTransferReadsIt) {
    keepLoopbackFromProxies();
    start();
    const QTemporaryDir folder;
    CHttpTransfer transfer(loopbackHost(m_server->port()), true, false);
    EXPECT_TRUE(transfer.DownloadToFile("/page", folder.filePath("page")));
    EXPECT_EQ(readFile(folder.filePath("page")), "hello");
    EXPECT_FALSE(transfer.DownloadToFile("/none", folder.filePath("none")));
    EXPECT_FALSE(QFile::exists(folder.filePath("none")));
}

} // namespace
} // namespace raincast
