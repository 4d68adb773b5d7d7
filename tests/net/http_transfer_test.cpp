// SPDX-License-Identifier: MIT
#include "net/byte_allowance.h"
#include "net/http_transfer.h"
#include "support/fault_server.h"
#include "support/files.h"
#include "support/full_disk.h"
#include "support/http_server.h"
#include "support/loopback.h"
#include "support/scoped_http.h"
#include "support/transfers.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>

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
    [[nodiscard]] std::string files() const { return namesIn(m_folder.path()); }
    /// The outcome of the last request, in words.
    [[nodiscard]] std::string lastOutcome() const {
        return m_transfers.finished.empty() ? "(none)"
                                            : m_transfers.finished.back().second.toStdString();
    }

    ScopedHttp m_http;
    Transfers m_transfers;
    QTemporaryDir m_folder;
};

// Files

TEST_F(HttpTransferTest, AFileIsCreatedAndOverwritten) {
    HttpServer server;
    server.serve("/a", "a longer first version");
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    ASSERT_TRUE(transfer.DownloadToFile("/a", local()));
    EXPECT_EQ(readFile(local()), "a longer first version");

    server.serve("/a", "second");
    ASSERT_TRUE(transfer.DownloadToFile("/a", local()));
    EXPECT_EQ(readFile(local()), "second");
    EXPECT_EQ(files(), "file");
}

TEST_F(HttpTransferTest, AnEmptyBodyIsAnEmptyFile) {
    HttpServer server;
    server.serve("/a", "");
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    EXPECT_TRUE(transfer.DownloadToFile("/a", local()));
    EXPECT_EQ(readFile(local()), "");
}

TEST_F(HttpTransferTest, EveryStatusFrom300OnFailsAndTouchesNoFile) {
    HttpServer server;
    for (const int status : {300, 301, 302, 304, 404, 500, 503}) {
        const QString path = QStringLiteral("/%1").arg(status);
        server.serve(path, "an error page", status);
        WaitingTransfer transfer(m_transfers, server.host(), true, false);
        EXPECT_FALSE(transfer.DownloadToFile(path, local()));
        EXPECT_FALSE(QFileInfo::exists(local()));
        EXPECT_EQ(transfer.connectState(), CHttpTransfer::ConnectState::connected);
        EXPECT_EQ(lastOutcome().substr(0, 3), std::to_string(status));
    }
    EXPECT_TRUE(files().empty());
}

TEST_F(HttpTransferTest, AFailureLeavesTheOldFile) {
    HttpServer server;
    writeFile(local(), "old");
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    EXPECT_FALSE(transfer.DownloadToFile("/absent", local()));
    EXPECT_EQ(readFile(local()), "old");
}

TEST_F(HttpTransferTest, AFailureDoesNotSpoilTheNextRequest) {
    HttpServer server;
    server.serve("/a", "fine");
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    EXPECT_FALSE(transfer.DownloadToFile("/absent", local()));
    EXPECT_TRUE(transfer.DownloadToFile("/a", local()));
    EXPECT_EQ(readFile(local()), "fine");
}

TEST_F(HttpTransferTest, ARedirectIsNotFollowed) {
    HttpServer server;
    server.serve("/target", "target");
    server.handle("/moved", [](const auto&) {
        return HttpServer::Response{301, "moved", "text/html", {{"Location", "/target"}}};
    });
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    EXPECT_FALSE(transfer.DownloadToFile("/moved", local()));
    EXPECT_EQ(server.count("/target"), 0);
    EXPECT_TRUE(files().empty());
}

// Listings

TEST_F(HttpTransferTest, AListingGivesItsQuotedStrings) {
    HttpServer server;
    server.serve("/", "<a href=\"y\">one</a> two \"x\", \"y\" again, \"\" and \"unclosed");
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    Strings strings{"kept"};
    ASSERT_TRUE(transfer.FetchQuotedStrings("/", strings));
    EXPECT_EQ(strings, (Strings{"", "kept", "x", "y"}));
}

TEST_F(HttpTransferTest, AnErrorPageIsScannedLikeAListing) {
    HttpServer server;
    server.serve("/", "<p class=\"error\">", 404);
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
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
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
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
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
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
    Transfers transfers(manager);
    for (int i = 1; i <= 2; ++i) {
        WaitingTransfer transfer(transfers, server.host(), true, false);
        EXPECT_EQ(manager.established, i - 1);
        EXPECT_TRUE(transfer.DownloadToFile("/", local()));
        EXPECT_TRUE(transfer.DownloadToFile("/", local()));
        EXPECT_EQ(manager.established, i);
        EXPECT_EQ(manager.released, i - 1);
    }
    EXPECT_EQ(manager.released, 2);

    { WaitingTransfer unused(transfers, server.host(), true, false); }
    {
        WaitingTransfer without(transfers, server.host(), false, false);
        EXPECT_TRUE(without.DownloadToFile("/", local()));
    }
    EXPECT_EQ(manager.established, 2);
    EXPECT_EQ(manager.released, 2);
}

TEST_F(HttpTransferTest, AListingTellsOfItsSource) {
    HttpServer server;
    for (const char* source : {"provider", "", "ok"}) {
        server.handle("/", [source](const HttpServer::Request&) {
            return HttpServer::Response{404, "\"a\"", "text/html", {{"raincast-SOURCE", source}}};
        });
        Transfers transfers;
        WaitingTransfer transfer(transfers, server.host(), false, false);
        EXPECT_EQ(transfer.listingSource(), "");
        Strings strings;
        EXPECT_TRUE(transfer.FetchQuotedStrings("/", strings));
        EXPECT_EQ(transfer.listingSource(), source);
    }
}

/// Knows a host by another address, or by none.
struct Directory : ConnectionManager {
    [[nodiscard]] QString addressOf(const QString& host) const override {
        return host == "a server" ? address : host;
    }
    QString address;
};

TEST_F(HttpTransferTest, AHostIsWhereTheConnectionManagerSays) {
    HttpServer server;
    server.serve("/", "\"x\"");
    Directory directory;
    directory.address = server.host();
    Transfers transfers(directory);
    WaitingTransfer transfer(transfers, "a server", true, false);
    Strings strings;
    EXPECT_TRUE(transfer.FetchQuotedStrings("/", strings));
    EXPECT_EQ(strings, Strings{"x"});
    server.serve("/", "", 500);
    EXPECT_FALSE(transfer.DownloadToFile("/", local()));
    EXPECT_EQ(transfer.trouble(), "a server answers with error 500.");

    directory.address.clear();
    WaitingTransfer nowhere(transfers, "a server", true, false);
    EXPECT_FALSE(nowhere.FetchQuotedStrings("/", strings));
    EXPECT_EQ(nowhere.trouble(), "a server does not answer.");
    EXPECT_EQ(nowhere.connectState(), CHttpTransfer::ConnectState::failed);
    EXPECT_FALSE(nowhere.DownloadToFile("/", local()));
}

TEST_F(HttpTransferTest, AFailedConnectIsNotTriedAgain) {
    const RefusingPort port;
    CountingConnectionManager manager;
    Transfers transfers(manager);
    const auto outcome = [&transfers] { return transfers.finished.back().second.toStdString(); };
    {
        WaitingTransfer transfer(transfers, port.host(), true, false);
        EXPECT_FALSE(transfer.DownloadToFile("/a", local()));
        EXPECT_THAT(outcome(), HasSubstr("connect to server"));
        EXPECT_EQ(transfer.connectState(), CHttpTransfer::ConnectState::failed);
        Strings strings;
        EXPECT_FALSE(transfer.FetchQuotedStrings("/", strings));
        EXPECT_FALSE(transfer.DownloadToFile("/a", local()));
        EXPECT_EQ(outcome(), "not tried again");
        EXPECT_EQ(manager.established, 1);
    }
    EXPECT_EQ(manager.released, 1);
    EXPECT_TRUE(files().empty());
}

// Servers that misbehave

struct Fault {
    const char* name;
    FaultServer::Answer answer;
    bool result;
    const char* contents; ///< of the file; null without a file
    const char* outcome;  ///< a part of the report
};

constexpr char digits[] = "0123456789";

std::vector<Fault> faults() {
    using namespace answers;
    return {
        {"an empty body", respond(200, ""), true, "", "200"},
        {"no content", raw("HTTP/1.1 204 No Content\r\n\r\n"), true, "", "204"},
        {"301", redirect(301, "/elsewhere"), false, nullptr, "301"},
        {"302", redirect(302, "http://radar.invalid/"), false, nullptr, "302"},
        {"404", respond(404, "not here"), false, nullptr, "404"},
        {"500", respond(500, ""), false, nullptr, "500"},
        {"an error page cut off", raw("HTTP/1.1 500 E\r\nContent-Length: 9\r\n\r\nx"), false,
         nullptr, "500, "},
        {"a body cut in the middle", cut(digits, 5), true, "01234", "200, "},
        {"a body cut before it begins", cut(digits, 0), true, "", "200, "},
        {"a body until the connection ends", raw("HTTP/1.0 200 OK\r\n\r\nall"), true, "all", "200"},
        {"chunks", chunked(digits, 3), true, digits, "200"},
        {"chunks that break off", chunked(digits, 3, false), true, digits, "200, "},
        {"a chunk of no size",
         raw("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\nabc"), true, "", "200, "},
        {"a length too long", wrongLength(digits, 100), true, digits, "200, "},
        {"a length too short", wrongLength(digits, 4), true, "0123", "200"},
        {"a length below nothing", raw("HTTP/1.1 200 OK\r\nContent-Length: -5\r\n\r\nabc"), false,
         nullptr, ""},
        {"two lengths", raw("HTTP/1.1 200 OK\r\nContent-Length: 1\r\nContent-Length: 2\r\n\r\nab"),
         true, "ab", "200"},
        {"no byte at all", nothing(), false, nullptr, "mpty reply"},
        {"half of the headers", raw("HTTP/1.1 200 OK\r\nContent-Le"), false, nullptr, ""},
        {"no HTTP", raw("220 mail.example ready\r\n"), false, nullptr, "HTTP/0.9"},
        {"headers without end", endlessHeaders(), false, nullptr, ""},
        {"interim responses without end",
         raw(QByteArray("HTTP/1.1 100 Continue\r\n\r\n").repeated(20'000)), false, nullptr, ""},
    };
}

TEST_F(HttpTransferTest, EachFaultOfAServerHasItsOutcome) {
    for (const Fault& fault : faults()) {
        SCOPED_TRACE(fault.name);
        FaultServer server(answers::respond(200, "fine"));
        server.on("/fault", fault.answer);
        WaitingTransfer transfer(m_transfers, server.host(), true, false);
        EXPECT_EQ(transfer.DownloadToFile("/fault", local()), fault.result);
        EXPECT_EQ(QFileInfo::exists(local()), fault.contents != nullptr);
        if (fault.contents != nullptr) {
            EXPECT_EQ(readFile(local()), fault.contents);
        }
        EXPECT_THAT(lastOutcome(), HasSubstr(fault.outcome));
        EXPECT_NE(lastOutcome(), "");
        EXPECT_EQ(m_transfers.finished.size(), 1U);

        // None of them spoils the object.
        EXPECT_EQ(transfer.connectState(), CHttpTransfer::ConnectState::connected);
        EXPECT_TRUE(transfer.DownloadToFile("/", local()));
        EXPECT_EQ(readFile(local()), "fine");
        QFile::remove(local());
        EXPECT_TRUE(files().empty());
        m_transfers.finished.clear();
    }
}

TEST_F(HttpTransferTest, AConnectionResetInTheMiddleKeepsWhatCame) {
    QByteArray body;
    for (int i = 0; i < 20'000; ++i) {
        body += QByteArray::number(10'000 + i);
    }
    FaultServer server(answers::respond(200, "fine"));
    server.on("/reset", answers::reset(body, 50'000));
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    // What had not been read when the reset came may be lost on the way, the headers included.
    if (transfer.DownloadToFile("/reset", local())) {
        EXPECT_LE(readFile(local()).size(), 50'000);
        EXPECT_TRUE(body.startsWith(readFile(local())));
    } else {
        EXPECT_EQ(files(), "");
    }
    EXPECT_TRUE(transfer.DownloadToFile("/", local()));
    EXPECT_EQ(readFile(local()), "fine");
}

TEST_F(HttpTransferTest, ABrokenOffFileIsKeptAsItCame) {
    FaultServer server(answers::cut("whole", 2));
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    EXPECT_TRUE(transfer.DownloadToFile("/", local()));
    EXPECT_EQ(readFile(local()), "wh");
}

// Kinds

const FileKind kDigits{
    "digits", 4, [](QByteArrayView first) { return first.size() == 4 && first.front() == '0'; },
    false};

TEST_F(HttpTransferTest, ABodyOfAnotherKindIsNoFile) {
    struct Row {
        const char* what;
        FaultServer::Answer answer;
        bool kept;
        std::string outcome;
    };
    const Row rows[] = {
        {"the kind", answers::respond(200, "0123456789"), true, "200"},
        {"just what tells", answers::respond(200, "0123"), true, "200"},
        {"in pieces", answers::chunked("0123456789", 1), true, "200"},
        {"cut", answers::cut("0123456789", 5), true, "200, "},
        {"a page", answers::respond(200, "<html>Please log in</html>"), false, "200, no digits"},
        {"too short to tell", answers::respond(200, "012"), false, "200, no digits"},
        {"nothing", answers::respond(200, {}), false, "200, no digits"},
        {"a page without end", answers::hugeListing(100 << 20), false, "200, no digits"},
        {"cut before it tells", answers::cut("0123456789", 3), false, "no digits"},
        {"compressed unasked",
         answers::respond(200, "\x1F\x8B\x08 0123", "Content-Encoding: gzip\r\n"), false,
         "200, no digits"},
        {"to another host", answers::redirect(302, "http://127.0.0.1:1/login"), false, "302"},
    };
    writeFile(local("old"), "old");
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        const FaultServer server(row.answer);
        WaitingTransfer transfer(m_transfers, server.host(), true, false);
        EXPECT_EQ(transfer.DownloadToFile("/", local("new"), kDigits), row.kept);
        EXPECT_EQ(QFile::exists(local("new")), row.kept);
        EXPECT_THAT(lastOutcome(), HasSubstr(row.outcome));
        EXPECT_EQ(transfer.writeFailure(), std::nullopt);
        QFile::remove(local("new"));
        EXPECT_EQ(transfer.DownloadToFile("/", local("old"), kDigits), row.kept);
        EXPECT_EQ(readFile(local("old")) != "old", row.kept) << "a good file gives way to none";
        writeFile(local("old"), "old");
        EXPECT_EQ(files(), "old");
    }
}

TEST_F(HttpTransferTest, AKindThatMustBeWholeIsNotKeptInPart) {
    FileKind whole = kDigits;
    whole.mustBeWhole = true;
    ScopedHttp::waitBriefly();
    FaultServer server(answers::respond(200, "0123456789"));
    server.on("/cut", answers::cut("0123456789", 9));
    server.on("/chunks", answers::chunked("0123456789", 3, false));
    server.on("/stall", answers::stall("0123456789"));
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    EXPECT_TRUE(transfer.DownloadToFile("/", local(), whole));
    for (const char* path : {"/cut", "/chunks", "/stall"}) {
        EXPECT_FALSE(transfer.DownloadToFile(path, local(), whole)) << path;
        EXPECT_THAT(lastOutcome(), testing::EndsWith(", not whole")) << path;
    }
    EXPECT_EQ(readFile(local()), "0123456789");
}

// Limits

TEST_F(HttpTransferTest, TheLimitsAreKnown) {
    const HttpLimits limits;
    EXPECT_EQ(limits.connectTimeout, std::chrono::seconds(30));
    EXPECT_EQ(limits.stallTime, std::chrono::seconds(30));
    EXPECT_EQ(limits.stallBytesPerSecond, 64);
    EXPECT_EQ(limits.totalTime, std::chrono::minutes(10));
    EXPECT_EQ(limits.listingBytes, 8'388'608);
    EXPECT_EQ(limits.fileBytes, 4'194'304);
    EXPECT_EQ(limits.actionBytes, 67'108'864);
}

TEST_F(HttpTransferTest, AFileOfMoreThanFourMebibytesIsRefused) {
    const QByteArray most(4 << 20, 'x');
    FaultServer server(answers::respond(200, most));
    server.on("/more", answers::respond(200, most + 'x'));
    server.on("/chunks", answers::chunked(most + 'x', 1 << 20));
    server.on("/endless", answers::hugeListing(qint64{1} << 40));
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    EXPECT_TRUE(transfer.DownloadToFile("/", local()));
    EXPECT_EQ(readFile(local()), most);
    for (const char* path : {"/more", "/chunks", "/endless"}) {
        EXPECT_FALSE(transfer.DownloadToFile(path, local("more"))) << path;
        EXPECT_EQ(lastOutcome(), "200, larger than a file may be") << path;
    }
    EXPECT_EQ(files(), "file");
}

TEST_F(HttpTransferTest, AnActionBringsNoMoreThanItMay) {
    httpLimits().actionBytes = 25'000;
    FaultServer server(answers::respond(200, QByteArray(10'000, 'x')));
    const auto allowance = std::make_shared<ByteAllowance>();
    WaitingTransfer first(m_transfers, server.host(), true, false, allowance);
    WaitingTransfer second(m_transfers, server.host(), true, false, allowance);
    EXPECT_TRUE(first.DownloadToFile("/", local("a")));
    EXPECT_TRUE(second.DownloadToFile("/", local("b")));
    EXPECT_FALSE(first.DownloadToFile("/", local("c")));
    EXPECT_EQ(lastOutcome(), "200, more than one update may bring");
    EXPECT_EQ(server.requests().size(), 3U);
    EXPECT_FALSE(second.DownloadToFile("/", local("d")));
    EXPECT_EQ(lastOutcome(), "not tried again");
    EXPECT_EQ(server.requests().size(), 3U);
    EXPECT_EQ(files(), "a b");

    WaitingTransfer next(m_transfers, server.host(), true, false);
    EXPECT_TRUE(next.DownloadToFile("/", local("c")));
}

TEST_F(HttpTransferTest, WhatIsRefusedCountsAsBrought) {
    httpLimits().fileBytes = 1'000;
    httpLimits().actionBytes = 25'000;
    FaultServer server(answers::respond(404, QByteArray(5'000, 'x')));
    server.on("/large", answers::respond(200, QByteArray(2'000, 'x')));
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    int tried = 0;
    while (tried < 100 && lastOutcome() != "not tried again") {
        EXPECT_FALSE(transfer.DownloadToFile(tried % 2 == 0 ? "/large" : "/", local()));
        ++tried;
    }
    EXPECT_LT(tried, 12);
}

// Servers that keep us waiting. Each object then gives up, or every frame of an update would wait
// as long again.

void expectGivenUp(WaitingTransfer& transfer, const FaultServer& server, const QString& local) {
    const auto requests = server.requests().size();
    const auto start = std::chrono::steady_clock::now();
    Strings strings;
    EXPECT_FALSE(transfer.DownloadToFile("/fine", local));
    EXPECT_FALSE(transfer.FetchQuotedStrings("/fine", strings));
    EXPECT_LT(std::chrono::steady_clock::now() - start, milliseconds(100));
    EXPECT_EQ(server.requests().size(), requests);
    EXPECT_TRUE(strings.empty());
}

TEST_F(HttpTransferTest, AStalledBodyEndsThereAndIsTheLast) {
    ScopedHttp::waitBriefly();
    FaultServer server(answers::stall("half a fra"));
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    EXPECT_TRUE(transfer.DownloadToFile("/", local()));
    EXPECT_EQ(readFile(local()), "half a fra");
    EXPECT_EQ(lastOutcome(), "200, the server stalled");
    EXPECT_EQ(transfer.connectState(), CHttpTransfer::ConnectState::connected);
    expectGivenUp(transfer, server, local("other"));
    EXPECT_EQ(files(), "file");
}

TEST_F(HttpTransferTest, ABodyThatDripsEndsToo) {
    ScopedHttp::waitBriefly();
    httpLimits().stallBytesPerSecond = 1000;
    FaultServer server(answers::drip(milliseconds(10)));
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    EXPECT_TRUE(transfer.DownloadToFile("/", local()));
    EXPECT_GT(readFile(local()).size(), 0);
    EXPECT_LT(readFile(local()).size(), 200);
    expectGivenUp(transfer, server, local("other"));
}

TEST_F(HttpTransferTest, AResponseWithoutEndEndsAtItsTime) {
    httpLimits().stallBytesPerSecond = 1;
    httpLimits().totalTime = milliseconds(500);
    FaultServer server(answers::drip(milliseconds(10)));
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    EXPECT_TRUE(transfer.DownloadToFile("/", local()));
    EXPECT_GT(readFile(local()).size(), 0);
    EXPECT_LT(readFile(local()).size(), 200);
    EXPECT_EQ(lastOutcome(), "200, the response took too long");
    EXPECT_EQ(transfer.connectState(), CHttpTransfer::ConnectState::connected);
    expectGivenUp(transfer, server, local("other"));
}

TEST_F(HttpTransferTest, ASilentServerGivesNoFile) {
    ScopedHttp::waitBriefly();
    FaultServer server(answers::silence());
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    EXPECT_FALSE(transfer.DownloadToFile("/", local()));
    EXPECT_EQ(lastOutcome(), "the server stalled");
    expectGivenUp(transfer, server, local());
    EXPECT_TRUE(files().empty());
}

TEST_F(HttpTransferTest, AListingThatStallsGivesWhatCame) {
    ScopedHttp::waitBriefly();
    FaultServer server(answers::stall("<a href=\"one\"><a href=\"tw"));
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    Strings strings;
    EXPECT_TRUE(transfer.FetchQuotedStrings("/", strings));
    EXPECT_EQ(strings, Strings{"one"});
    expectGivenUp(transfer, server, local());
}

TEST_F(HttpTransferTest, ConnectingThatTakesTooLongHasFailed) {
    ScopedHttp::waitBriefly();
    const DeafPort port;
    WaitingTransfer transfer(m_transfers, port.host(), true, false);
    EXPECT_FALSE(transfer.DownloadToFile("/", local()));
    EXPECT_EQ(transfer.connectState(), CHttpTransfer::ConnectState::failed);
    EXPECT_FALSE(transfer.DownloadToFile("/", local()));
    EXPECT_EQ(lastOutcome(), "not tried again");
}

TEST_F(HttpTransferTest, AnUnknownHostHasFailed) {
    ScopedHttp::waitBriefly();
    for (const char* host :
         {"radar.invalid", "", ":80", "a b", "127.0.0.1/ridge", "me@127.0.0.1"}) {
        SCOPED_TRACE(host);
        WaitingTransfer transfer(m_transfers, host, true, false);
        Strings strings;
        EXPECT_FALSE(transfer.FetchQuotedStrings("/ridge/", strings));
        EXPECT_EQ(transfer.connectState(), CHttpTransfer::ConnectState::failed);
    }
}

// Listings that misbehave

TEST_F(HttpTransferTest, AHugeListingEndsAtItsLimit) {
    FaultServer server(answers::hugeListing(100'000'000));
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    Strings strings;
    EXPECT_TRUE(transfer.FetchQuotedStrings("/", strings));
    // "<html>\n", then lines of 40 bytes whose string ends after 22.
    EXPECT_EQ(strings.size(), ((8U << 20) - 7 - 22) / 40 + 1);
    EXPECT_EQ(*strings.begin(), "F0000000.gif");

    // Ended on purpose, so the next request is tried.
    server.otherwise(answers::respond(200, "\"x\""));
    strings.clear();
    EXPECT_TRUE(transfer.FetchQuotedStrings("/", strings));
    EXPECT_EQ(strings, Strings{"x"});
}

TEST_F(HttpTransferTest, AListingOfAnyBytesIsScanned) {
    FaultServer server(answers::respond(200, "\"\xE9t\xE9\" \"\" \"odd"));
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    Strings strings;
    EXPECT_TRUE(transfer.FetchQuotedStrings("/", strings));
    const QChar widened(0xFFE9);
    EXPECT_EQ(strings, (Strings{"", QString(widened) + 't' + widened}));
}

TEST_F(HttpTransferTest, AListingThatBreaksOffGivesWhatCame) {
    FaultServer server(answers::cut("\"one\" \"two\" \"three\"", 14));
    server.on("/none", answers::nothing());
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    Strings strings;
    EXPECT_TRUE(transfer.FetchQuotedStrings("/", strings));
    EXPECT_EQ(strings, (Strings{"one", "two"}));
    EXPECT_FALSE(transfer.FetchQuotedStrings("/none", strings));
}

// Secure transfers

TEST_F(HttpTransferTest, ThePortFollowsTheSecureFlag) {
    ScopedHttp::waitBriefly();
    const struct {
        const char* host;
        bool secure;
        const char* listing;
        const char* file;
    } rows[] = {
        {"radar.invalid", false, "http://radar.invalid/a", "http://radar.invalid/a"},
        {"radar.invalid", true, "http://radar.invalid:443/a", "https://radar.invalid/a"},
        {"radar.invalid:8000", false, "http://radar.invalid:8000/a", "http://radar.invalid:8000/a"},
        {"radar.invalid:8000", true, "http://radar.invalid:8000/a", "https://radar.invalid:8000/a"},
        {"[::1]:1", true, "http://[::1]:1/a", "https://[::1]:1/a"},
    };
    for (const auto& row : rows) {
        m_transfers.finished.clear();
        WaitingTransfer transfer(m_transfers, row.host, false, row.secure);
        Strings strings;
        EXPECT_FALSE(transfer.FetchQuotedStrings("/a", strings));
        EXPECT_FALSE(transfer.DownloadToFile("/a", local()));
        ASSERT_EQ(m_transfers.finished.size(), 2U);
        EXPECT_EQ(m_transfers.finished[0].first, row.listing);
        EXPECT_EQ(m_transfers.finished[1].first, row.file);
    }
}

TEST_F(HttpTransferTest, ASecureObjectsListingIsPlainAndItsFilesAreNot) {
    HttpServer server;
    server.serve("/", "\"x\"");
    WaitingTransfer transfer(m_transfers, server.host(), true, true);
    Strings strings;
    EXPECT_TRUE(transfer.FetchQuotedStrings("/", strings));
    EXPECT_EQ(strings, Strings{"x"});
    EXPECT_FALSE(transfer.DownloadToFile("/", local()));
    EXPECT_THAT(lastOutcome(), testing::AnyOf(HasSubstr("SSL"), HasSubstr("TLS")));
    EXPECT_EQ(server.count("/"), 1);
    EXPECT_TRUE(files().empty());
}

// Disks that misbehave

TEST_F(HttpTransferTest, AFolderThatIsNotThereOrNoFolderFails) {
    HttpServer server;
    server.serve("/", "x");
    writeFile(local(), "a file");
    const auto failure = [&](const QString& path) {
        WaitingTransfer transfer(m_transfers, server.host(), true, false);
        EXPECT_FALSE(transfer.DownloadToFile("/", path));
        return transfer.writeFailure();
    };
    EXPECT_EQ(failure(local("absent/file")), qt_error_string(ENOENT));
    EXPECT_EQ(failure(local("file/file")), qt_error_string(ENOTDIR));
    EXPECT_EQ(failure(m_folder.path()), qt_error_string(EISDIR));
    EXPECT_EQ(files(), "file");
}

TEST_F(HttpTransferTest, AFolderThatMayNotBeWrittenFails) {
    HttpServer server;
    server.serve("/", "x");
    const QFile::Permissions old = QFile::permissions(m_folder.path());
    ASSERT_TRUE(QFile::setPermissions(m_folder.path(), QFile::ReadOwner | QFile::ExeOwner));
    // Root may write everywhere, so it steps down for a moment.
    const uid_t user = geteuid();
    const uid_t nobody = 65534;
    if (user == 0 && seteuid(nobody) != 0) {
        GTEST_SKIP() << "root cannot step down here";
    }
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    EXPECT_FALSE(transfer.DownloadToFile("/", local()));
    EXPECT_EQ(transfer.writeFailure(), qt_error_string(EACCES));
    EXPECT_EQ(seteuid(user), 0);
    QFile::setPermissions(m_folder.path(), old);
    EXPECT_TRUE(files().empty());
}

TEST_F(HttpTransferTest, AFullDiskLeavesTheOldFileAndNoShortOne) {
    HttpServer server;
    server.serve("/large", QByteArray(500'000, 'x'));
    server.serve("/small", "small");
    writeFile(local("old"), "old");
    WaitingTransfer transfer(m_transfers, server.host(), true, false);
    {
        const FullDisk disk(100'000);
        EXPECT_FALSE(transfer.DownloadToFile("/large", local("old")));
        EXPECT_EQ(transfer.writeFailure(), qt_error_string(EFBIG));
        EXPECT_EQ(lastOutcome(), "200, not written: " + qt_error_string(EFBIG).toStdString());
        EXPECT_TRUE(transfer.DownloadToFile("/small", local("small")));
        EXPECT_EQ(transfer.writeFailure(), std::nullopt);
    }
    EXPECT_EQ(readFile(local("old")), "old");
    EXPECT_EQ(files(), "old small");
}

// Several at a time

TEST_F(HttpTransferTest, RequestsOfOneObjectRunSideBySideOverSixConnections) {
    std::atomic<int> atOnce = 0;
    std::atomic<int> most = 0;
    std::atomic<bool> go = false;
    FaultServer server([&](FaultConnection& to) {
        most = std::max<int>(most, ++atOnce);
        while (!go && to.pause(milliseconds(5))) {
        }
        --atOnce;
        to.send(answers::response(200, "x"));
    });
    CHttpTransfer transfer(m_transfers.downloads(), server.host(), true, false);
    int kept = 0;
    for (int i = 0; i < 20; ++i) {
        const QString name = QString::number(i);
        transfer.DownloadToFile("/" + name, local(name), kAnyFile, [&](const auto& fetched) {
            kept += fetched.kept ? 1 : 0;
        });
    }
    EXPECT_TRUE(m_transfers.loop().until([&] { return most == 6; }));
    go = true;
    EXPECT_TRUE(m_transfers.loop().until([&] { return kept == 20; }));
    EXPECT_EQ(most, 6);
    EXPECT_EQ(server.connections(), 6);
    EXPECT_EQ(server.requests().size(), 20U);
}

TEST_F(HttpTransferTest, WhatStillRunsFailsWithTheOneThatStalls) {
    FaultServer server(answers::silence());
    server.on("/stall", answers::stall("half a fra"));
    httpLimits().stallTime = std::chrono::seconds(20);
    CHttpTransfer transfer(m_transfers.downloads(), server.host(), true, false);
    std::vector<std::string> ended;
    const auto get = [&](const char* path) {
        transfer.DownloadToFile(
            path, local(path + 1), kAnyFile,
            [&ended, path](const auto& fetched) {
                EXPECT_TRUE(fetched.last) << path;
                ended.push_back((fetched.kept ? "kept " : "failed ") + std::string(path));
            }
        );
    };
    get("/a");
    get("/b");
    httpLimits().stallTime = milliseconds(200);
    get("/stall");
    EXPECT_TRUE(m_transfers.loop().until([&] { return ended.size() == 3; }));
    EXPECT_THAT(ended, testing::UnorderedElementsAre("failed /a", "failed /b", "kept /stall"));
    get("/c");
    EXPECT_TRUE(m_transfers.loop().until([&] { return ended.size() == 4; }));
    EXPECT_EQ(ended.back(), "failed /c");
    EXPECT_EQ(server.count("/c"), 0);
}

TEST_F(HttpTransferTest, NothingComesToAnObjectThatHasGone) {
    FaultServer server(answers::respond(200, QByteArray(100'000, 'x')));
    server.on("/slow", answers::silence());
    for (const char* path : {"/slow", "/quick"}) {
        for (int events = 0; events < 4; ++events) {
            auto transfer = std::make_unique<CHttpTransfer>(
                m_transfers.downloads(), server.host(), true, false
            );
            bool called = false;
            transfer->DownloadToFile(path, local(), kAnyFile, [&](const auto&) { called = true; });
            transfer->FetchQuotedStrings(path, [&](const auto&) { called = true; });
            for (int i = 0; i < events; ++i) {
                m_transfers.loop().drain();
            }
            const bool before = called;
            transfer.reset();
            WaitingTransfer another(m_transfers, server.host(), true, false);
            EXPECT_TRUE(another.DownloadToFile("/another", local("another")));
            EXPECT_EQ(called, before) << path;
        }
    }
}

TEST_F(HttpTransferTest, AnObjectMayEndInItsCall) {
    FaultServer server(answers::respond(200, "x"));
    auto transfer =
        std::make_unique<CHttpTransfer>(m_transfers.downloads(), server.host(), true, false);
    bool ended = false;
    transfer->DownloadToFile("/a", local(), kAnyFile, [&](const auto&) {
        transfer.reset();
        ended = true;
    });
    transfer->DownloadToFile("/b", local(), kAnyFile, [&](const auto&) {
        transfer.reset();
        ended = true;
    });
    EXPECT_TRUE(m_transfers.loop().until([&] { return ended; }));
}

// The child dies in the middle of the body.
TEST_F(HttpTransferTest, AProgramKilledInTheMiddleLeavesNoHalfFile) {
    std::atomic<pid_t> child = 0;
    FaultServer server([&child](FaultConnection& to) {
        to.send("HTTP/1.1 200 OK\r\nContent-Length: 200000\r\n\r\n" + QByteArray(100'000, 'x'));
        to.pause(milliseconds(100));
        kill(child, SIGKILL);
        to.waitForEnd();
    });
    const pid_t forked = fork();
    if (forked == 0) {
        Transfers transfers;
        WaitingTransfer transfer(transfers, server.host(), false, false);
        _exit(transfer.DownloadToFile("/", local()) ? 1 : 2);
    }
    child = forked;
    int status = 0;
    ASSERT_EQ(waitpid(forked, &status, 0), forked);
    ASSERT_TRUE(WIFSIGNALED(status)) << WEXITSTATUS(status);
    EXPECT_EQ(files(), "");

    writeFile(local("file.part"), "what one leaves that is killed while it writes");
    server.otherwise(answers::respond(200, "whole"));
    WaitingTransfer transfer(m_transfers, server.host(), false, false);
    EXPECT_TRUE(transfer.DownloadToFile("/", local()));
    EXPECT_EQ(readFile(local()), "whole");
    EXPECT_EQ(files(), "file");
}

} // namespace
} // namespace raincast
