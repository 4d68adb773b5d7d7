// SPDX-License-Identifier: MIT
#include "app/local_server.h"

#include "core/program_paths.h"

#include <QFileInfo>
#include <QUrl>

#include <utility>

namespace raincast {

namespace {

constexpr int kConnectMilliseconds = 1000;
constexpr int kStartMilliseconds = 10'000;
// The program's end waits for it.
constexpr int kEndMilliseconds = 100;
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
    m_limit.setSingleShot(true);
    QObject::connect(&m_limit, &QTimer::timeout, [this] { m_starting ? failed() : ready(); });
    // The server prints a line when it listens.
    QObject::connect(&m_server, &QProcess::readyReadStandardOutput, [this] { ready(); });
    QObject::connect(&m_server, &QProcess::stateChanged, [this](QProcess::ProcessState state) {
        if (m_starting && state == QProcess::NotRunning) {
            failed();
        }
    });
}

LocalServer::~LocalServer() {
    m_server.disconnect();
    if (m_server.state() != QProcess::NotRunning) {
        m_server.terminate();
        if (!m_server.waitForFinished(kEndMilliseconds)) {
            m_server.kill();
            m_server.waitForFinished(kEndMilliseconds);
        }
    }
}

void LocalServer::EstablishConnection(Ready ready) {
    if (m_waiting.empty() && !mayStart()) {
        ready(true);
        return;
    }
    m_waiting.push_back(std::move(ready));
    if (m_waiting.size() == 1) {
        lookForServer();
    }
}

bool LocalServer::isWanted() const {
    const RadarServers servers = ServersSetting::current();
    return servers.radar == m_address || servers.basemap == m_address;
}

bool LocalServer::mayStart() const {
    return m_server.state() == QProcess::NotRunning && m_failures < kMostFailures && isWanted();
}

void LocalServer::lookForServer() {
    const QUrl url(QStringLiteral("http://") + m_address);
    m_probe = std::make_unique<QTcpSocket>();
    QObject::connect(m_probe.get(), &QTcpSocket::connected, &m_limit, [this] { ready(); });
    QObject::connect(
        m_probe.get(), &QTcpSocket::errorOccurred, &m_limit,
        [this](QAbstractSocket::SocketError error) {
            error == QAbstractSocket::ConnectionRefusedError ? start() : ready();
        },
        Qt::QueuedConnection
    );
    m_limit.start(kConnectMilliseconds);
    m_probe->connectToHost(url.host(), static_cast<quint16>(url.port()));
}

void LocalServer::start() {
    if (!QFileInfo(m_program).isExecutable()) {
        failed();
        return;
    }
    m_starting = true;
    m_limit.start(kStartMilliseconds);
    m_server.start(
        m_program, {QStringLiteral("--listen"), m_address, QStringLiteral("--end-with-parent"),
                    QStringLiteral("--quiet")}
    );
}

void LocalServer::failed() {
    ++m_failures;
    ready();
}

// Lets everything go on that waits.
void LocalServer::ready() {
    m_starting = false;
    m_limit.stop();
    if (m_probe) {
        m_probe->disconnect();
        m_probe.release()->deleteLater(); // this may be its call
    }
    for (const Ready& waiting : std::exchange(m_waiting, {})) {
        waiting(true);
    }
}

} // namespace raincast
