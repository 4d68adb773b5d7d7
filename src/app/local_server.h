// SPDX-License-Identifier: MIT
#pragma once

#include "net/connection.h"
#include "weather/servers_setting.h"

#include <QProcess>
#include <QString>
#include <QTcpSocket>
#include <QTimer>

#include <memory>
#include <vector>

namespace raincast {

/// Starts the radar image server that is installed beside the viewer when it is wanted and not
/// running, so that a newcomer sees weather without configuring anything. While the settings name
/// the installed server, each transfer that is about to connect first tries whether a server
/// listens there, and starts it if not. (Another viewer may have started it, and may end.) The
/// server ends with the viewer, even if the viewer is killed. Only the transfer waits, never the
/// program.
class LocalServer : public ConnectionManager {
public:
    /// Where the installed server is. If it is missing, nothing is ever started.
    [[nodiscard]] static QString installedProgram();

    /// `address` is HOST:PORT.
    explicit LocalServer(
        QString address = ServersSetting::localServer(), QString program = installedProgram()
    );
    /// Ends the server that it started.
    ~LocalServer() override;

    /// Always gives true.
    void EstablishConnection(Ready ready) override;

    /// The server that was started by this object and runs; 0 for none.
    [[nodiscard]] qint64 processId() const { return m_server.processId(); }

private:
    [[nodiscard]] bool isWanted() const;
    [[nodiscard]] bool mayStart() const;
    void lookForServer();
    void start();
    void failed();
    void ready();

    QString m_address;
    QString m_program;
    QProcess m_server;
    int m_failures = 0;           ///< starts that did not bring up a server
    std::vector<Ready> m_waiting; ///< while a server is looked for or starts
    std::unique_ptr<QTcpSocket> m_probe;
    QTimer m_limit; ///< of the look, then of the start
    bool m_starting = false;
};

} // namespace raincast
