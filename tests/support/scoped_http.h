// SPDX-License-Identifier: MIT
#pragma once

#include "net/connection.h"
#include "net/http_settings.h"

#include <QString>

#include <chrono>
#include <utility>
#include <vector>

namespace raincast {

/// Limits of a fifth of a second, so that no test waits, and an ear on every transfer, for as long
/// as it lives; what was set before comes back at its end.
class ScopedHttp {
public:
    ScopedHttp() : m_limits(httpLimits()), m_hooks(httpHooks()) {
        httpLimits().connectTimeout = std::chrono::milliseconds(200);
        httpLimits().stallTime = std::chrono::milliseconds(200);
        httpHooks().finished = [this](const QString& url, const QString& outcome) {
            finished.emplace_back(url, outcome);
        };
    }
    ~ScopedHttp() {
        httpLimits() = m_limits;
        httpHooks() = m_hooks;
    }
    ScopedHttp(const ScopedHttp&) = delete;
    ScopedHttp& operator=(const ScopedHttp&) = delete;

    /// Each request's URL and its outcome.
    std::vector<std::pair<QString, QString>> finished;

private:
    HttpLimits m_limits;
    HttpHooks m_hooks;
};

/// Counts what is asked of the connection manager, for as long as it lives.
class CountingConnectionManager : public ConnectionManager {
public:
    explicit CountingConnectionManager(bool succeeds = true) : m_succeeds(succeeds) { use(this); }
    ~CountingConnectionManager() override { use(nullptr); }
    CountingConnectionManager(const CountingConnectionManager&) = delete;
    CountingConnectionManager& operator=(const CountingConnectionManager&) = delete;

    [[nodiscard]] bool establish() override {
        ++established;
        return m_succeeds;
    }
    void release() override { ++released; }

    int established = 0;
    int released = 0;

private:
    bool m_succeeds;
};

} // namespace raincast
