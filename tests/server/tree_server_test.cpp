// SPDX-License-Identifier: MIT
#include "raw_client.h"
#include "server/tree_server.h"
#include "support/files.h"
#include "support/loopback.h"
#include "support/transfers.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>

namespace raincast {
namespace {

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;

/// A tree of "/page", which changes, and "/frame", which does not.
class TreeServerTest : public ::testing::Test {
protected:
    TreeServerTest() { EXPECT_TRUE(m_server.start("127.0.0.1", 0)); }
    ~TreeServerTest() override { m_server.stop(); }

    void answer(std::string_view path, const TreeAsker& asker) {
        m_wasWaiting = asker.isWaiting();
        if (path == "/page") {
            asker.tell(TreeAnswer{"hello"});
        } else if (path == "/frame") {
            asker.tell(TreeAnswer{"GIF89a", "image/gif", 60});
        } else {
            asker.tell(std::nullopt);
        }
    }

    [[nodiscard]] std::string ask(const std::string& line) const {
        const RawClient client(m_server.port());
        client.send(line + " HTTP/1.1\r\nConnection: close\r\n\r\n");
        return client.readAll();
    }

    std::atomic<bool> m_wasWaiting = false;
    TreeServer m_server{
        [this](std::string_view path, const TreeAsker& asker) { answer(path, asker); }};
};

TEST_F(TreeServerTest, AnswersWithTypeAndAge) {
    EXPECT_THAT(
        ask("GET /page"),
        AllOf(
            StartsWith("HTTP/1.1 200"), EndsWith("\r\n\r\nhello"),
            HasSubstr("Content-Type: text/html; charset=utf-8"),
            HasSubstr("Cache-Control: no-cache"), HasSubstr("X-Content-Type-Options: nosniff")
        )
    );
    EXPECT_TRUE(m_wasWaiting);
    EXPECT_THAT(
        ask("GET /frame"), AllOf(
                               EndsWith("\r\n\r\nGIF89a"), HasSubstr("Content-Type: image/gif"),
                               HasSubstr("Cache-Control: max-age=60")
                           )
    );
    EXPECT_EQ(m_server.counts().requests, 2U);
}

TEST_F(TreeServerTest, HeadGivesNoBody) {
    EXPECT_THAT(
        ask("HEAD /frame"),
        AllOf(StartsWith("HTTP/1.1 200"), HasSubstr("Content-Length: 6"), EndsWith("\r\n\r\n"))
    );
}

TEST_F(TreeServerTest, WhatIsNotInTheTreeIsNotFound) {
    for (const char* target :
         {"/", "/../../etc/passwd", "/%2e%2e/%2e%2e/etc/passwd", "/page/../../etc/passwd",
          "/..%2f..%2fetc%2fpasswd", "/page%00", "/%", "/%zz", "//page", "/\\..\\page",
          "http://127.0.0.1/page/.."}) {
        EXPECT_THAT(ask(std::string("GET ") + target), StartsWith("HTTP/1.1 404")) << target;
    }
    EXPECT_EQ(m_server.counts().notFound, 11U);
}

TEST_F(TreeServerTest, OnlyReadsAreAllowed) {
    for (const char* method : {"POST", "PUT", "DELETE", "OPTIONS", "PATCH", "CONNECT", "TRACE"}) {
        EXPECT_THAT(
            ask(std::string(method) + " /page"),
            AllOf(
                StartsWith("HTTP/1.1 405"), HasSubstr("Allow: GET, HEAD"), Not(HasSubstr("hello"))
            )
        ) << method;
    }
    EXPECT_THAT(ask("OPTIONS *"), StartsWith("HTTP/1.1 405"));
}

TEST_F(TreeServerTest, TheViewersTransferReadsIt) {
    keepLoopbackFromProxies();
    const QTemporaryDir folder;
    Transfers transfers;
    WaitingTransfer transfer(transfers, loopbackHost(m_server.port()), true, false);
    EXPECT_TRUE(transfer.DownloadToFile("/page", folder.filePath("page")));
    EXPECT_EQ(readFile(folder.filePath("page")), "hello");
    EXPECT_FALSE(transfer.DownloadToFile("/none", folder.filePath("none")));
    EXPECT_FALSE(QFile::exists(folder.filePath("none")));
}

} // namespace
} // namespace raincast
