// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// Brings up and releases the device's data connection before and after a transfer. The operating
/// system keeps its connections up by itself, so this one does nothing and reports success; tests
/// replace it to see when a connection is asked for.
class ConnectionManager {
public:
    virtual ~ConnectionManager() = default;

    /// Brings up a connection; true when there is one. After a failure the transfer is tried all
    /// the same.
    [[nodiscard]] virtual bool establish() { return true; }

    /// Releases what establish brought up.
    virtual void release() {}

    /// Puts a manager in use for the whole program; null puts the default back. The manager is
    /// borrowed and must outlive its use.
    static void use(ConnectionManager* manager);
};

/// Brings up a data connection; returns whether there is one. User-interface thread only.
[[nodiscard]] bool EstablishConnection();

/// Releases the data connection. Always true.
bool ReleaseConnection();

/// Whether a data connection is known to be up. Always false, so that each transfer object
/// establishes and releases for itself.
[[nodiscard]] bool IsConnected();

} // namespace raincast
