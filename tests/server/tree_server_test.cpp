// SPDX-License-Identifier: MIT
#include "server/tree_server.h"
#include "support/files.h"
#include "support/loopback.h"
#include "support/raw_client.h"
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
            asker.tell(TreeAnswer{
                QByteArray("hello"), "text/html; charset=utf-8", Keeping::askAgain});
        } else if (path == "/frame") {
            asker.tell(TreeAnswer{QByteArray("GIF89a"), "image/gif", Keeping::forGood});
        } else if (path == "/listing") {
            asker.tell(TreeAnswer{m_listing});
        } else if (path == "/ready") {
            TreeAnswer answer{QByteArray("No.\n"), "text/plain", Keeping::never};
            answer.status = 503;
            asker.tell(answer);
        } else {
            asker.tell(std::nullopt);
        }
    }

    [[nodiscard]] std::string ask(const std::string& line, const std::string& headers = {}) const {
        const RawClient client(m_server.port());
        client.send(line + " HTTP/1.1\r\n" + headers + "Connection: close\r\n\r\n");
        return client.readAll();
    }
    /// The value of a header of an answer; empty without it.
    static std::string header(const std::string& answer, const std::string& name) {
        const std::size_t at = answer.find("\r\n" + name + ": ");
        const std::size_t begin = at + name.size() + 4;
        return at == std::string::npos ? std::string()
                                       : answer.substr(begin, answer.find("\r\n", begin) - begin);
    }
    static std::string bodyOf(const std::string& answer) {
        return answer.substr(answer.find("\r\n\r\n") + 4);
    }

    TreeBody m_listing = QByteArray("<a href=\"LWX.gif\">LWX.gif</a>\n").repeated(40);

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
                               HasSubstr("Cache-Control: public, max-age=31536000, immutable\r\n")
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

TEST_F(TreeServerTest, WhatIsKnownIsNotSentAgain) {
    for (const std::string path : {"/page", "/frame", "/listing"}) {
        const std::string tag = header(ask("GET " + path), "ETag");
        ASSERT_EQ(tag.size(), 22U) << path;
        for (const std::string& known : {tag, "W/" + tag, "\"x\", " + tag, std::string("*")}) {
            for (const std::string method : {"GET ", "HEAD "}) {
                const std::string answer = ask(method + path, "If-None-Match: " + known + "\r\n");
                EXPECT_THAT(answer, AllOf(StartsWith("HTTP/1.1 304"), EndsWith("\r\n\r\n")));
                EXPECT_EQ(header(answer, "ETag"), tag);
                EXPECT_NE(header(answer, "Cache-Control"), "");
            }
        }
        for (const std::string& other : {std::string("\"x\""), tag.substr(1), std::string()}) {
            EXPECT_THAT(
                ask("GET " + path, "If-None-Match: " + other + "\r\n"), StartsWith("HTTP/1.1 200")
            );
        }
    }
}

TEST_F(TreeServerTest, TextsComePackedToThoseWhoTakeIt) {
    const std::string plain = ask("GET /listing");
    EXPECT_EQ(header(plain, "Cache-Control"), "max-age=30");
    EXPECT_EQ(header(plain, "Vary"), "Accept-Encoding");
    EXPECT_EQ(header(plain, "Content-Encoding"), "");
    EXPECT_EQ(bodyOf(plain), m_listing.bytes().toStdString());
    const std::string gzip = "Accept-Encoding: gzip, br\r\n";
    const std::string packed = ask("GET /listing", gzip);
    EXPECT_EQ(header(packed, "Content-Encoding"), "gzip");
    EXPECT_EQ(header(packed, "Vary"), "Accept-Encoding");
    EXPECT_EQ(bodyOf(packed), m_listing.gzipped().toStdString());
    EXPECT_EQ(header(packed, "Content-Length"), std::to_string(m_listing.gzipped().size()));
    const std::string tag = header(packed, "ETag");
    EXPECT_NE(tag, header(plain, "ETag")) << "other bytes";
    // Each form knows its own tag only.
    EXPECT_THAT(
        ask("GET /listing", gzip + "If-None-Match: " + tag + "\r\n"), StartsWith("HTTP/1.1 304")
    );
    EXPECT_THAT(ask("GET /listing", "If-None-Match: " + tag + "\r\n"), StartsWith("HTTP/1.1 200"));
    const std::string head = ask("HEAD /listing", gzip);
    EXPECT_THAT(head, EndsWith("\r\n\r\n"));
    EXPECT_EQ(header(head, "Content-Length"), header(packed, "Content-Length"));
    EXPECT_EQ(header(ask("GET /listing", "Accept-Encoding: gzip;q=0\r\n"), "Content-Encoding"), "");
    EXPECT_EQ(header(ask("GET /page", gzip), "Content-Encoding"), "") << "too small";
    EXPECT_EQ(header(ask("GET /frame", gzip), "Content-Encoding"), "");
    EXPECT_EQ(header(ask("GET /frame", gzip), "Vary"), "") << "a picture has one form";
}

TEST_F(TreeServerTest, WhatIsOfTheMomentIsNotKept) {
    const std::string answer = ask("GET /ready", "If-None-Match: *\r\n");
    EXPECT_THAT(answer, AllOf(StartsWith("HTTP/1.1 503"), EndsWith("\r\n\r\nNo.\n")));
    EXPECT_EQ(header(answer, "Cache-Control"), "no-store");
    EXPECT_EQ(header(answer, "ETag"), "");
}

TEST_F(TreeServerTest, CountsWhatItAnswers) {
    const std::string tag = header(ask("GET /frame"), "ETag");
    static_cast<void>(ask("GET /frame", "If-None-Match: " + tag + "\r\n"));
    static_cast<void>(ask("HEAD /frame"));
    static_cast<void>(ask("GET /none"));
    static_cast<void>(ask("POST /none"));
    EXPECT_EQ(m_server.requests().withStatus(200), 2U);
    EXPECT_EQ(m_server.requests().withStatus(304), 1U);
    EXPECT_EQ(m_server.requests().withStatus(404), 1U);
    EXPECT_EQ(m_server.requests().withStatus(405), 1U);
    EXPECT_EQ(m_server.requests().bytes(RequestKind::page), 6U) << "of one GET";
}

TEST_F(TreeServerTest, HostileHeadersGetAnAnswer) {
    const std::string names[] = {"Accept-Encoding", "If-None-Match", "Range", "If-Range"};
    for (const std::string& name : names) {
        for (const std::string& value :
             {std::string(12'000, ','), std::string(12'000, '"'), std::string("\xff;=,q"),
              "gzip" + std::string(12'000, ';'), std::string("bytes=99999999999999999999-0")}) {
            EXPECT_THAT(
                ask("GET /listing", name + ": " + value + "\r\n"), StartsWith("HTTP/1.1 200")
            ) << name
              << ' ' << value.substr(0, 20);
        }
        EXPECT_THAT(
            ask("GET /listing", name + ": " + std::string(20'000, 'a') + "\r\n"),
            StartsWith("HTTP/1.1 431")
        );
        EXPECT_THAT(ask("GET /listing", name + ": gzip\x01\r\n"), StartsWith("HTTP/1.1 400"))
            << "a control character";
    }
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
