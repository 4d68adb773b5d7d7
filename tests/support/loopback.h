// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <vector>

namespace raincast {

/// "127.0.0.1:PORT"
[[nodiscard]] QString loopbackHost(int port);

/// Sets no_proxy so that transfers of this process reach loopback servers directly, whatever
/// proxies the developer's environment names.
void keepLoopbackFromProxies();

/// A TCP socket bound to a free loopback port; listens unless `backlog` is negative. Returns the
/// descriptor, -1 on failure, and sets `port`.
[[nodiscard]] int bindLoopback(int backlog, int& port);

/// A port that refuses connections, and that nobody else gets meanwhile: bound, never listened on.
class RefusingPort {
public:
    RefusingPort();
    ~RefusingPort();
    RefusingPort(const RefusingPort&) = delete;
    RefusingPort& operator=(const RefusingPort&) = delete;

    [[nodiscard]] QString host() const { return loopbackHost(m_port); }

private:
    int m_port = 0;
    int m_socket;
};

/// A port that neither takes nor refuses connections: its queue is full, so that the system drops
/// what comes and connecting takes for ever.
class DeafPort {
public:
    DeafPort();
    ~DeafPort();
    DeafPort(const DeafPort&) = delete;
    DeafPort& operator=(const DeafPort&) = delete;

    [[nodiscard]] QString host() const { return loopbackHost(m_port); }

private:
    int m_port = 0;
    int m_socket;
    std::vector<int> m_queue;
};

} // namespace raincast
