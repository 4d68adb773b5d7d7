// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>
#include <vector>

namespace raincast {

/// A radar image server that the viewer starts for itself when it is wanted, at a port that is
/// free. It ends with the viewer, even if the viewer is killed. Nobody waits but who asks for it.
class LocalServer {
public:
    /// Where the server that is installed with this viewer is.
    [[nodiscard]] static QString installedProgram();
    /// The one for a viewer in that folder: beside it, as where they are built, or else in the
    /// folder of programs that both are installed for.
    [[nodiscard]] static QString programFor(const QString& viewerFolder);

    /// `arguments` say what it serves. If the program is missing, nothing is ever started.
    LocalServer(QString program, QStringList arguments);
    /// Ends it.
    ~LocalServer();
    LocalServer(const LocalServer&) = delete;
    LocalServer& operator=(const LocalServer&) = delete;

    /// Calls `ready`, now or from the event loop, with the address (HOST:PORT) at which the server
    /// listens, after starting it if it does not run; with an empty text if it cannot be started.
    /// After three starts in vain it is not tried again until end().
    using Ready = std::function<void(const QString& address)>;
    void use(Ready ready);

    /// Ends it, if it runs, without waiting for that.
    void end();

    /// The address at which it listens; empty while it does not.
    [[nodiscard]] const QString& address() const { return m_address; }
    /// 0 while it does not run.
    [[nodiscard]] qint64 processId() const { return m_process ? m_process->processId() : 0; }

private:
    void start();
    void readOutput();
    void failed();
    void letGo();

    QString m_program;
    QStringList m_arguments;
    QObject m_ending; ///< the parent of processes that were asked to end
    std::unique_ptr<QProcess> m_process;
    QString m_address;
    int m_failures = 0;           ///< starts that did not bring up a server
    std::vector<Ready> m_waiting; ///< while it starts
    QTimer m_limit;               ///< of the start
};

} // namespace raincast
