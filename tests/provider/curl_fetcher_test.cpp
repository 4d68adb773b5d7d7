// SPDX-License-Identifier: MIT
#include "provider/curl_fetcher.h"
#include "support/fault_server.h"
#include "support/files.h"
#include "support/loopback.h"
#include "support/peer_servers.h"

#include <QProcess>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

using namespace std::chrono_literals;
using Failure = FetchAnswer::Failure;
using ::testing::HasSubstr;

class CurlFetcherTest : public ::testing::Test {
protected:
    CurlFetcherTest() { keepLoopbackFromProxies(); }

    FetchAnswer ask(FetchRequest request) {
        CurlFetcher fetcher("Raincast/test", m_limits);
        std::optional<FetchAnswer> result;
        fetcher.get(std::move(request), [&result](FetchAnswer answer) {
            result = std::move(answer);
        });
        EXPECT_FALSE(result);
        while (!result) {
            fetcher.pump(50ms);
        }
        EXPECT_TRUE(fetcher.isIdle());
        return *result;
    }
    FetchAnswer get(const QByteArray& path) { return ask({url(path), 1000}); }
    [[nodiscard]] QByteArray url(const QByteArray& path) const {
        return "http://" + m_server.host().toUtf8() + path;
    }

    CurlFetcher::Limits m_limits{500ms, 800ms};
    FaultServer m_server;
};

TEST_F(CurlFetcherTest, BringsBodyAndTags) {
    m_server.on(
        "/a", answers::respond(
                  200, "hello",
                  "ETag: \"x\"\r\nLast-Modified: Sun, 31 May 2026 20:09:00 GMT\r\n"
                  "retry-after: 7\r\n"
              )
    );
    const FetchAnswer answer = get("/a");
    EXPECT_EQ(answer.failure, Failure::none);
    EXPECT_EQ(answer.status, 200);
    EXPECT_EQ(answer.body, "hello");
    EXPECT_EQ(answer.etag, "\"x\"");
    EXPECT_EQ(answer.lastModified, "Sun, 31 May 2026 20:09:00 GMT");
    EXPECT_EQ(answer.retryAfter, "7");
}

TEST_F(CurlFetcherTest, SaysWhoAsksAndOnWhatCondition) {
    ask({url("/a"), 10, "\"x\"", "Sun, 31 May 2026 20:09:00 GMT", "application/geo+json"});
    const std::string head = m_server.requests().at(0).toStdString();
    EXPECT_THAT(head, HasSubstr("User-Agent: Raincast/test\r\n"));
    EXPECT_THAT(head, HasSubstr("If-None-Match: \"x\"\r\n"));
    EXPECT_THAT(head, HasSubstr("If-Modified-Since: Sun, 31 May 2026 20:09:00 GMT\r\n"));
    EXPECT_THAT(head, HasSubstr("Accept: application/geo+json\r\n"));
    EXPECT_EQ(head.find("Origin"), std::string::npos);
}

TEST_F(CurlFetcherTest, ATagOfAnotherServerCannotBeAHeaderOfItsOwn) {
    ask({url("/a"), 10, "\"x\"\r\nX-Else: 1", "Sun\nX-Else: 1"});
    const std::string head = m_server.requests().at(0).toStdString();
    EXPECT_EQ(head.find("X-Else"), std::string::npos) << head;
    EXPECT_THAT(head, HasSubstr("Accept: */*\r\n"));
}

TEST_F(CurlFetcherTest, ABodyMayHaveItsMostBytesAndNoMore) {
    m_server.on("/a", answers::respond(200, QByteArray(1000, 'x')));
    m_server.on("/b", answers::chunked(QByteArray(1001, 'x'), 100));
    EXPECT_EQ(get("/a").body.size(), 1000);
    const FetchAnswer answer = get("/b");
    EXPECT_EQ(answer.failure, Failure::broken);
    EXPECT_EQ(answer.problem, "the answer is too large");
    EXPECT_LE(answer.body.size(), 1000);
}

TEST_F(CurlFetcherTest, FollowsRedirectsOnTheSameServerOnly) {
    m_server.on("/good", answers::respond(200, "hello"));
    m_server.on("/same", answers::redirect(302, "/good"));
    EXPECT_EQ(get("/same").body, "hello");
    FaultServer other(answers::respond(200, "stolen"));
    m_server.on("/other", answers::redirect(302, "http://" + other.host().toUtf8() + "/"));
    EXPECT_EQ(get("/other").status, 302);
    m_server.on("/safe", answers::redirect(301, "https://" + m_server.host().toUtf8() + "/good"));
    EXPECT_EQ(get("/safe").status, 301);
    m_server.on("/file", answers::redirect(301, "file:///etc/passwd"));
    EXPECT_EQ(get("/file").status, 301);
    EXPECT_EQ(other.connections(), 0);
    m_server.on("/round", answers::redirect(302, "/round"));
    EXPECT_EQ(get("/round").status, 302);
    EXPECT_EQ(m_server.count("/round"), 4);
}

TEST_F(CurlFetcherTest, WhatDoesNotComeWholeIsBroken) {
    const FaultServer::Answer faults[] = {
        answers::nothing(),
        answers::cut("hello", 2),
        answers::reset("hello", 2),
        answers::stall("hello"),
        answers::silence(),
        answers::endlessHeaders(),
        answers::wrongLength("hello", 9),
        answers::raw("no HTTP at all\r\n\r\n")};
    for (const auto& fault : faults) {
        m_server.on("/a", fault);
        const FetchAnswer answer = get("/a");
        EXPECT_EQ(answer.failure, Failure::broken) << &fault - faults;
        EXPECT_NE(answer.problem, "") << &fault - faults;
    }
}

TEST_F(CurlFetcherTest, WithoutAConnectionItIsUnreachable) {
    const RefusingPort refusing;
    EXPECT_EQ(ask({"http://" + refusing.host().toUtf8(), 1}).failure, Failure::unreachable);
    const DeafPort deaf;
    EXPECT_EQ(ask({"http://" + deaf.host().toUtf8(), 1}).failure, Failure::unreachable);
    EXPECT_EQ(ask({"http://nothing.invalid/", 1}).failure, Failure::unreachable);
}

TEST_F(CurlFetcherTest, WithoutLibcurlEveryRequestFails) {
    CurlFetcher fetcher("x", {}, nullptr);
    bool isDone = false;
    fetcher.get({"http://127.0.0.1/", 1}, [&isDone](const FetchAnswer& answer) {
        EXPECT_EQ(answer.failure, Failure::broken);
        isDone = true;
    });
    fetcher.pump(0ms);
    EXPECT_TRUE(isDone);
}

/// A server with a certificate of an authority of our own.
class TlsCurlFetcherTest : public CurlFetcherTest {
protected:
    TlsCurlFetcherTest() : m_before(qgetenv("SSL_CERT_FILE")) { m_limits = {10s, 20s}; }
    ~TlsCurlFetcherTest() override {
        m_before.isNull() ? qunsetenv("SSL_CERT_FILE") : qputenv("SSL_CERT_FILE", m_before);
    }

    [[nodiscard]] QString file(const QString& name) const { return m_folder.filePath(name); }

    bool run(const QStringList& arguments) {
        QProcess openssl;
        openssl.start("openssl", arguments);
        return openssl.waitForFinished() && openssl.exitCode() == 0;
    }
    /// An authority, and a certificate for a name that it has signed.
    bool makeCertificate(const QByteArray& name) {
        writeFile(file("ext"), "subjectAltName=" + name);
        return run(
                   {"req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1",
                    "-nodes", "-days", "2", "-subj", "/CN=Test authority", "-keyout",
                    file("ca.key"), "-out", file("ca.pem")}
               ) &&
               run(
                   {"req", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes",
                    "-subj", "/CN=server", "-keyout", file("key"), "-out", file("request")}
               ) &&
               run(
                   {"x509", "-req", "-days", "2", "-in", file("request"), "-CA", file("ca.pem"),
                    "-CAkey", file("ca.key"), "-CAcreateserial", "-extfile", file("ext"), "-out",
                    file("certificate")}
               );
    }
    FetchAnswer getFromNginx() {
        const NginxServer nginx(
            m_folder.path(), "server { listen LISTEN ssl; root ROOT; ssl_certificate " +
                                 file("certificate") + "; ssl_certificate_key " + file("key") +
                                 "; }"
        );
        return ask({"https://" + nginx.host().toUtf8() + "/hello", 100});
    }

    QTemporaryDir m_folder;
    QByteArray m_before;
};

TEST_F(TlsCurlFetcherTest, ChecksTheServersCertificate) {
    if (NginxServer::program().isEmpty() || !run({"version"})) {
        GTEST_SKIP() << "nginx or openssl is not installed";
    }
    writeFile(file("hello"), "hello");
    ASSERT_TRUE(makeCertificate("IP:127.0.0.1"));
    // The system does not know the authority.
    qunsetenv("SSL_CERT_FILE");
    EXPECT_EQ(getFromNginx().failure, Failure::broken);
    qputenv("SSL_CERT_FILE", QFile::encodeName(file("ca.pem")));
    const FetchAnswer answer = getFromNginx();
    EXPECT_EQ(answer.failure, Failure::none) << qPrintable(answer.problem);
    EXPECT_EQ(answer.body, "hello");
    // A certificate for somebody else.
    ASSERT_TRUE(makeCertificate("DNS:radar.example"));
    EXPECT_EQ(getFromNginx().failure, Failure::broken);
}

} // namespace
} // namespace raincast
