// SPDX-License-Identifier: MIT
// Transfers from servers that others wrote: each lists a folder and serves its files in its own
// way.
#include "support/files.h"
#include "support/peer_servers.h"
#include "support/scoped_http.h"
#include "support/transfers.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace raincast {
namespace {

class PeerServersTest : public testing::Test {
protected:
    void SetUp() override {
        // A peer that is slow to start is no failure.
        httpLimits().connectTimeout = httpLimits().stallTime = std::chrono::seconds(10);
        for (const QString& name : m_names) {
            writeFile(m_folder.filePath("ridge/MUX/" + name), body(name));
        }
    }

    static QByteArray body(const QString& name) { return name.toUtf8().repeated(1000); }

    void expectListingAndFiles(const QString& host) {
        ASSERT_NE(host, "");
        WaitingTransfer transfer(m_transfers, host, true, false);
        std::set<QString> listing;
        ASSERT_TRUE(transfer.FetchQuotedStrings("/ridge/MUX/", listing));
        EXPECT_THAT(listing, testing::IsSupersetOf(m_names));
        for (const QString& name : m_names) {
            const QString local = m_local.filePath(name);
            ASSERT_TRUE(transfer.DownloadToFile("/ridge/MUX/" + name, local));
            EXPECT_EQ(readFile(local), body(name));
        }
        EXPECT_FALSE(transfer.DownloadToFile("/ridge/MUX/absent.gif", m_local.filePath("absent")));
        EXPECT_FALSE(transfer.DownloadToFile("/ridge/MUX", m_local.filePath("absent"))); // 301
        EXPECT_EQ(readFile(m_local.filePath("absent")), "(none)");
    }

    const std::vector<QString> m_names{
        "MUX_20190519_0446_N0R.gif", "MUX_20190519_0452_N0R.gif", "MUX_N0R_0.gfw"};
    ScopedHttp m_http;
    Transfers m_transfers;
    QTemporaryDir m_folder;
    QTemporaryDir m_local;
};

TEST_F(PeerServersTest, Nginx) {
    if (NginxServer::program().isEmpty()) {
        GTEST_SKIP() << "nginx is not installed";
    }
    const NginxServer server(m_folder.path());
    expectListingAndFiles(server.host());
}

TEST_F(PeerServersTest, PythonsHttpServer) {
    if (PythonServer::program().isEmpty()) {
        GTEST_SKIP() << "python3 is not installed";
    }
    const PythonServer server(m_folder.path());
    expectListingAndFiles(server.host());
}

} // namespace
} // namespace raincast
