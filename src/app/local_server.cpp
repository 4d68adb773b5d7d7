// SPDX-License-Identifier: MIT
#include "app/local_server.h"

#include "platform/program_paths.h"
#include "weather/servers.h"

#include <QFileInfo>
#include <QTcpSocket>
#include <QUrl>

namespace raincast {

namespace {

constexpr int kConnectMilliseconds = 1000;
constexpr int kStartMilliseconds = 10'000;
constexpr int kEndMilliseconds = 2000;

bool isWanted() {
    const RadarServers servers = CServers::current();
    return servers.radar == CServers::localServer() || servers.basemap == CServers::localServer();
}

bool isRefused() {
    const QUrl url(QStringLiteral("http://") + CServers::localServer());
    QTcpSocket socket;
    socket.connectToHost(url.host(), static_cast<quint16>(url.port()));
    return !socket.waitForConnected(kConnectMilliseconds) &&
           socket.error() == QAbstractSocket::ConnectionRefusedError;
}

} // namespace

LocalServer::LocalServer() {
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
    if (!m_looked && isWanted()) {
        m_looked = true;
        if (isRefused()) {
            start();
        }
    }
    return true;
}

/// Waits for the line that the server prints when it listens.
void LocalServer::start() {
    const QString program = programFolder() + QStringLiteral("/raincast-server");
    if (!QFileInfo(program).isExecutable()) {
        return;
    }
    m_server.start(
        program, {QStringLiteral("--listen"), CServers::localServer(),
                  QStringLiteral("--end-with-parent"), QStringLiteral("--quiet")}
    );
    if (m_server.waitForStarted(kStartMilliseconds)) {
        m_server.waitForReadyRead(kStartMilliseconds);
    }
}

} // namespace raincast
