// SPDX-License-Identifier: MIT
#pragma once

#include "net/connection.h"

#include <QProcess>

namespace raincast {

/// Starts the radar image server that is installed beside the viewer when it is wanted and not
/// running, so that a newcomer sees weather without configuring anything: while the servers of the
/// settings are the installed one, the first transfer that is about to connect finds out whether
/// anybody listens there, and starts it where nobody does. It ends with the viewer, even one that
/// is killed.
class LocalServer : public ConnectionManager {
public:
    LocalServer();
    /// Ends the server that it started.
    ~LocalServer() override;
    LocalServer(const LocalServer&) = delete;
    LocalServer& operator=(const LocalServer&) = delete;

    [[nodiscard]] bool establish() override;

private:
    void start();

    QProcess m_server;
    bool m_looked = false; ///< once per run: a server that ends by itself is not started again
};

} // namespace raincast
