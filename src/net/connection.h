// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

namespace raincast {

/// Brings up and releases the device's data connection before and after a transfer. The operating
/// system keeps its connections up by itself, so this one does nothing and reports success at once.
/// User-interface thread only.
class ConnectionManager {
public:
    ConnectionManager() = default;
    virtual ~ConnectionManager() = default;
    ConnectionManager(const ConnectionManager&) = delete;
    ConnectionManager& operator=(const ConnectionManager&) = delete;

    /// Brings up a connection to a host, and then calls `ready`, now or from the event loop. The
    /// caller may have gone by then: `ready` has to know. `up`: there is a connection. Without one
    /// the transfer is tried all the same.
    using Ready = std::function<void(bool up)>;
    virtual void EstablishConnection(const QString& /*host*/, Ready ready) { ready(true); }

    /// Where a host is reached after that, HOST or HOST:PORT: the host itself unless the manager
    /// knows better; empty if it is nowhere, and is not to be tried.
    [[nodiscard]] virtual QString addressOf(const QString& host) const { return host; }

    /// Releases what EstablishConnection brought up. Always true.
    virtual bool ReleaseConnection() { return true; }

    /// Whether a data connection is known to be up. Always false, so that each transfer object
    /// establishes and releases for itself.
    [[nodiscard]] virtual bool IsConnected() const { return false; }

    /// The one that does nothing.
    [[nodiscard]] static ConnectionManager& ofTheSystem();
};

} // namespace raincast
