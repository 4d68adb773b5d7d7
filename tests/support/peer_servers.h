// SPDX-License-Identifier: MIT
#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

namespace raincast {

/// nginx serving a folder with listings on a free loopback port, for as long as it lives; its
/// settings and temporary files are its own. The socket is ours and listens before nginx runs, so
/// nobody has to wait for it.
class NginxServer {
public:
    /// Where nginx is; empty when it is not installed.
    [[nodiscard]] static QString program();

    explicit NginxServer(const QString& folder);
    /// The same with a "server" block of settings, in which "LISTEN" stands for the address and
    /// "ROOT" for the folder.
    NginxServer(const QString& folder, QString server);
    ~NginxServer();
    NginxServer(const NginxServer&) = delete;
    NginxServer& operator=(const NginxServer&) = delete;

    /// "127.0.0.1:PORT"; empty when nginx could not be started.
    [[nodiscard]] QString host() const { return m_host; }

private:
    QTemporaryDir m_prefix;
    QProcess m_process;
    QString m_host;
};

/// Python's http.server serving a folder on a free loopback port, for as long as it lives.
class PythonServer {
public:
    /// Where python3 is; empty when it is not installed.
    [[nodiscard]] static QString program();

    explicit PythonServer(const QString& folder);
    ~PythonServer();
    PythonServer(const PythonServer&) = delete;
    PythonServer& operator=(const PythonServer&) = delete;

    /// "127.0.0.1:PORT"; empty when it could not be started.
    [[nodiscard]] QString host() const { return m_host; }

private:
    QProcess m_process;
    QString m_host;
};

} // namespace raincast
