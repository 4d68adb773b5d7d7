// SPDX-License-Identifier: MIT
#include "support/peer_servers.h"

#include "support/loopback.h"

#include <QFile>
#include <QProcessEnvironment>
#include <QRegularExpression>
#include <QStandardPaths>

#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>

namespace raincast {

namespace {

// nginx takes over the listening sockets whose descriptors this variable lists.
constexpr char kInheritedSockets[] = "NGINX";
constexpr int kInheritedDescriptor = 100; // above those that QProcess uses

constexpr char kNginxSettings[] = R"(
daemon off;
worker_processes 1;
%1
pid nginx.pid;
error_log stderr crit;
events {}
http {
    access_log off;
    client_body_temp_path body;
    proxy_temp_path proxy;
    fastcgi_temp_path fastcgi;
    uwsgi_temp_path uwsgi;
    scgi_temp_path scgi;
    %2
}
)";

constexpr char kPlainServer[] = R"(
    server {
        listen LISTEN;
        location / {
            root "ROOT";
            autoindex on;
        }
    }
)";

// Its worker would step down to a user who may not read the tests' folders.
QString userDirective() {
    return geteuid() == 0 ? QStringLiteral("user root;") : QString();
}

// A peer does not outlive a test that crashed.
void endWithParent() {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
}

void end(QProcess& process) {
    process.terminate();
    if (!process.waitForFinished(2000)) {
        process.kill();
        process.waitForFinished();
    }
}

} // namespace

QString NginxServer::program() {
    const QString name = QStringLiteral("nginx");
    const QString found = QStandardPaths::findExecutable(name);
    return found.isEmpty() ? QStandardPaths::findExecutable(name, {QStringLiteral("/usr/sbin")})
                           : found;
}

NginxServer::NginxServer(const QString& folder)
    : NginxServer(folder, QString::fromLatin1(kPlainServer)) {}

NginxServer::NginxServer(const QString& folder, QString server) {
    keepLoopbackFromProxies();
    int port = 0;
    const int socket = bindLoopback(64, port);
    const QString host = loopbackHost(port);
    QFile settings(m_prefix.filePath(QStringLiteral("nginx.conf")));
    if (socket < 0 || !settings.open(QIODevice::WriteOnly)) {
        return;
    }
    server.replace(QStringLiteral("LISTEN"), host).replace(QStringLiteral("ROOT"), folder);
    settings.write(QString::fromLatin1(kNginxSettings).arg(userDirective(), server).toUtf8());
    settings.close();

    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(
        QString::fromLatin1(kInheritedSockets), QString::number(kInheritedDescriptor) + u';'
    );
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.setChildProcessModifier([socket] {
        endWithParent();
        dup2(socket, kInheritedDescriptor);
    });
    m_process.start(
        program(), {QStringLiteral("-p"), m_prefix.path(), QStringLiteral("-c"),
                    settings.fileName(), QStringLiteral("-e"), QStringLiteral("stderr")}
    );
    if (m_process.waitForStarted()) {
        m_host = host;
    }
    ::close(socket);
}

NginxServer::~NginxServer() {
    end(m_process);
}

QString PythonServer::program() {
    return QStandardPaths::findExecutable(QStringLiteral("python3"));
}

PythonServer::PythonServer(const QString& folder) {
    keepLoopbackFromProxies();
    m_process.start(
        program(), QStringLiteral("-u -m http.server --bind 127.0.0.1 -d").split(u' ')
                       << folder << "0"
    );
    // Serving HTTP on 127.0.0.1 port 43215 (http://127.0.0.1:43215/) ...
    static const QRegularExpression announcement(QStringLiteral("port (\\d+)"));
    QString said;
    while (m_host.isEmpty() && m_process.waitForReadyRead(10'000)) {
        said += QString::fromUtf8(m_process.readAllStandardOutput());
        const QRegularExpressionMatch match = announcement.match(said);
        if (match.hasMatch() && said.contains(u'\n')) {
            m_host = loopbackHost(match.captured(1).toInt());
        }
    }
}

PythonServer::~PythonServer() {
    end(m_process);
}

} // namespace raincast
