// SPDX-License-Identifier: MIT
#include "net/http_transfer.h"
#include "platform/busy_guard.h"
#include "support/fault_server.h"
#include "support/http_server.h"
#include "support/loopback.h"
#include "support/scoped_http.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

namespace raincast {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::HasSubstr;
using Strings = std::set<QString>;

class HttpTransferTest : public testing::Test {
protected:
    [[nodiscard]] QString local(const QString& name = QStringLiteral("file")) const {
        return m_folder.filePath(name);
    }
    [[nodiscard]] QStringList files() const {
        return QDir(m_folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    static QByteArray contents(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }
    static void write(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_EQ(file.write(bytes), bytes.size());
    }
    /// The outcome of the last request, in words.
    [[nodiscard]] std::string lastOutcome() const {
        return m_http.finished.empty() ? "(none)" : m_http.finished.back().second.toStdString();
    }

    ScopedHttp m_http;
    QTemporaryDir m_folder;
};

// Files

TEST_F(HttpTransferTest, AFileIsCreatedAndOverwritten) {
    HttpServer server;
    server.serve("/a", "a longer first version");
    CHttpTransfer transfer(server.host(), true, false);
    ASSERT_TRUE(transfer.DownloadToFile("/a", local()));
    EXPECT_EQ(contents(local()), "a longer first version");

    server.serve("/a", "second");
    ASSERT_TRUE(transfer.DownloadToFile("/a", local()));
    EXPECT_EQ(contents(local()), "second");
    EXPECT_EQ(files(), QStringList("file"));
}

TEST_F(HttpTransferTest, AnEmptyBodyIsAnEmptyFile) {
    HttpServer server;
    server.serve("/a", "");
    CHttpTransfer transfer(server.host(), true, false);
    EXPECT_TRUE(transfer.DownloadToFile("/a", local()));
    EXPECT_EQ(contents(local()), "");
}

TEST_F(HttpTransferTest, EveryStatusFrom300OnFailsAndTouchesNoFile) {
    HttpServer server;
    for (const int status : {300, 301, 302, 304, 404, 500, 503}) {
        const QString path = QStringLiteral("/%1").arg(status);
        server.serve(path, "an error page", status);
        CHttpTransfer transfer(server.host(), true, false);
        EXPECT_FALSE(transfer.DownloadToFile(path, local()));
        EXPECT_FALSE(QFileInfo::exists(local()));
        EXPECT_EQ(transfer.connectState(), CHttpTransfer::ConnectState::Connected);
        EXPECT_EQ(lastOutcome().substr(0, 3), std::to_string(status));
    }
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(HttpTransferTest, AFailureLeavesTheOldFile) {
    HttpServer server;
    write(local(), "old");
    CHttpTransfer transfer(server.host(), true, false);
    EXPECT_FALSE(transfer.DownloadToFile("/absent", local()));
    EXPECT_EQ(contents(local()), "old");
}

TEST_F(HttpTransferTest, AFailureDoesNotSpoilTheNextRequest) {
    HttpServer server;
    server.serve("/a", "fine");
    CHttpTransfer transfer(server.host(), true, false);
    EXPECT_FALSE(transfer.DownloadToFile("/absent", local()));
    EXPECT_TRUE(transfer.DownloadToFile("/a", local()));
    EXPECT_EQ(contents(local()), "fine");
}

TEST_F(HttpTransferTest, ARedirectIsNotFollowed) {
    HttpServer server;
    server.serve("/target", "target");
    server.handle("/moved", [](const auto&) {
        return HttpServer::Response{301, "moved", "text/html", {{"Location", "/target"}}};
    });
    CHttpTransfer transfer(server.host(), true, false);
    EXPECT_FALSE(transfer.DownloadToFile("/moved", local()));
    EXPECT_EQ(server.count("/target"), 0);
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(HttpTransferTest, OnlyAnAbsentFileIsFetched) {
    HttpServer server;
    server.serve("/a", "new");
    write(local("empty"), "");
    CountingConnectionManager manager;
    {
        CHttpTransfer transfer(server.host(), true, false);
        EXPECT_TRUE(transfer.DownloadIfAbsent("/a", local("empty")));
        EXPECT_TRUE(transfer.DownloadIfAbsent("/a", m_folder.path()));
        EXPECT_EQ(transfer.connectState(), CHttpTransfer::ConnectState::NotYet);
    }
    EXPECT_EQ(server.count(), 0);
    EXPECT_EQ(manager.established, 0);
    EXPECT_EQ(manager.released, 0);
    EXPECT_EQ(contents(local("empty")), "");

    CHttpTransfer transfer(server.host(), true, false);
    EXPECT_TRUE(transfer.DownloadIfAbsent("/a", local("absent")));
    EXPECT_TRUE(transfer.DownloadIfAbsent("/a", local("absent")));
    EXPECT_EQ(contents(local("absent")), "new");
    EXPECT_EQ(server.count(), 1);
}

// Listings

TEST_F(HttpTransferTest, AListingGivesItsQuotedStrings) {
    HttpServer server;
    server.serve("/", "<a href=\"y\">one</a> two \"x\", \"y\" again, \"\" and \"unclosed");
    CHttpTransfer transfer(server.host(), true, false);
    Strings strings{"kept"};
    ASSERT_TRUE(transfer.FetchQuotedStrings("/", strings));
    EXPECT_EQ(strings, (Strings{"", "kept", "x", "y"}));
}

TEST_F(HttpTransferTest, AnErrorPageIsScannedLikeAListing) {
    HttpServer server;
    server.serve("/", "<p class=\"error\">", 404);
    CHttpTransfer transfer(server.host(), true, false);
    Strings strings;
    EXPECT_TRUE(transfer.FetchQuotedStrings("/", strings));
    EXPECT_EQ(strings, Strings{"error"});
    EXPECT_EQ(lastOutcome(), "404");
}

// The connection

TEST_F(HttpTransferTest, AllRequestsShareOneConnection) {
    HttpServer server;
    for (int i = 0; i < 5; ++i) {
        server.serve("/" + QString::number(i), QByteArray(30'000, 'x'));
    }
    CHttpTransfer transfer(server.host(), true, false);
    Strings strings;
    EXPECT_TRUE(transfer.FetchQuotedStrings("/", strings));
    for (int i = 0; i < 5; ++i) {
        const QString name = QString::number(i);
        EXPECT_TRUE(transfer.DownloadToFile("/" + name, local(name)));
    }
    EXPECT_EQ(server.count(), 6);
    EXPECT_EQ(server.connections(), 1);
}

TEST_F(HttpTransferTest, RequestsCarryTheProgramsHeadersAndNoCookies) {
    FaultServer server(answers::respond(200, "x", "Set-Cookie: flavour=oat; Path=/\r\n"));
    CHttpTransfer transfer(server.host(), true, false);
    EXPECT_TRUE(transfer.DownloadToFile("/a b\r\n\"#c", local()));
    EXPECT_TRUE(transfer.DownloadToFile("/second", local()));
    const auto requests = server.requests();
    ASSERT_EQ(requests.size(), 2U);
    EXPECT_EQ(
        requests[0].toStdString(),
        "GET /a%20b%0D%0A%22%23c HTTP/1.1\r\nHost: " + server.host().toStdString() +
            "\r\nUser-Agent: Quorvane\r\nPragma: no-cache\r\n\r\n"
    );
    EXPECT_FALSE(requests[1].toLower().contains("cookie"));
    EXPECT_EQ(server.connections(), 1);
}

TEST_F(HttpTransferTest, EachObjectEstablishesOnceAndReleasesOnce) {
    HttpServer server;
    server.serve("/", "x");
    CountingConnectionManager manager(false); // its failure is not acted upon
    for (int i = 1; i <= 2; ++i) {
        CHttpTransfer transfer(server.host(), true, false);
        EXPECT_EQ(manager.established, i - 1);
        EXPECT_TRUE(transfer.DownloadToFile("/", local()));
        EXPECT_TRUE(transfer.DownloadToFile("/", local()));
        EXPECT_EQ(manager.established, i);
        EXPECT_EQ(manager.released, i - 1);
    }
    EXPECT_EQ(manager.released, 2);

    { CHttpTransfer unused(server.host(), true, false); }
    {
        CHttpTransfer without(server.host(), false, false);
        EXPECT_TRUE(without.DownloadToFile("/", local()));
    }
    EXPECT_EQ(manager.established, 2);
    EXPECT_EQ(manager.released, 2);
}

TEST_F(HttpTransferTest, AFailedConnectIsNotTriedAgain) {
    const RefusingPort port;
    CountingConnectionManager manager;
    {
        CHttpTransfer transfer(port.host(), true, false);
        EXPECT_FALSE(transfer.DownloadToFile("/a", local()));
        EXPECT_THAT(lastOutcome(), HasSubstr("connect to server"));
        EXPECT_EQ(transfer.connectState(), CHttpTransfer::ConnectState::Failed);
        Strings strings;
        EXPECT_FALSE(transfer.FetchQuotedStrings("/", strings));
        EXPECT_FALSE(transfer.DownloadIfAbsent("/a", local()));
        EXPECT_EQ(lastOutcome(), "not tried after an earlier failure");
        EXPECT_EQ(manager.established, 1);
    }
    EXPECT_EQ(manager.released, 1);
    EXPECT_TRUE(files().isEmpty());
}

} // namespace
} // namespace raincast
