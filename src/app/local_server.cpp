// SPDX-License-Identifier: MIT
#include "app/local_server.h"

#include "core/busy_guard.h"
#include "core/program_paths.h"
#include "net/http_settings.h"

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QTcpSocket>
#include <QUrl>

#include <utility>

namespace raincast {

namespace {

constexpr int kConnectMilliseconds = 1000;
constexpr int kStartMilliseconds = 10'000;
constexpr int kEndMilliseconds = 2000;
constexpr int kPaintMilliseconds = 90;
// A server that does not come up will hardly do so at the next update; but of two viewers that
// start at the same time only one can have the port, and the other has to try again.
constexpr int kMostFailures = 3;

} // namespace

QString LocalServer::installedProgram() {
    return programFolder() + QStringLiteral("/raincast-server");
}

LocalServer::LocalServer(QString address, QString program)
    : m_address(std::move(address)), m_program(std::move(program)) {
    m_server.setStandardErrorFile(QProcess::nullDevice());
    ConnectionManager::use(this);
}

LocalServer::~LocalServer() {
    ConnectionManager::use(nullptr);
    if (m_server.state() != QProcess::NotRunning) {
        m_server.terminate();
        m_server.waitForFinished(kEndMilliseconds);
    }
}

bool LocalServer::establish() {
    const bool mayStart = m_server.state() == QProcess::NotRunning && m_failures < kMostFailures;
    if (mayStart && isWanted() && isRefused() && !start()) {
        ++m_failures;
    }
    return true;
}

bool LocalServer::isWanted() const {
    const RadarServers servers = ServersSetting::current();
    return servers.radar == m_address || servers.basemap == m_address;
}

bool LocalServer::isRefused() const {
    const QUrl url(QStringLiteral("http://") + m_address);
    QTcpSocket socket;
    socket.connectToHost(url.host(), static_cast<quint16>(url.port()));
    return !socket.waitForConnected(kConnectMilliseconds) &&
           socket.error() == QAbstractSocket::ConnectionRefusedError;
}

// Waits for the line that the server prints when it listens.
bool LocalServer::start() {
    if (!QFileInfo(m_program).isExecutable()) {
        return false;
    }
    const BusyGuard busy;
    m_server.start(
        m_program, {QStringLiteral("--listen"), m_address, QStringLiteral("--end-with-parent"),
                    QStringLiteral("--quiet")}
    );
    const QDeadlineTimer deadline(kStartMilliseconds);
    while (m_server.state() != QProcess::NotRunning && !deadline.hasExpired()) {
        if (m_server.waitForReadyRead(kPaintMilliseconds)) {
            return true;
        }
        if (httpHooks().waiting) {
            httpHooks().waiting();
        }
    }
    return false;
}

} // namespace raincast
