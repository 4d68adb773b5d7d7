// SPDX-License-Identifier: MIT
#pragma once

#include "net/connection.h"
#include "net/http_settings.h"

#include <QString>

#include <chrono>
#include <utility>
#include <vector>

namespace raincast {

/// Limits of two seconds, which no server of a test reaches unless it means to, and an ear on every
/// transfer, for as long as it lives; what was set before comes back at its end.
class ScopedHttp {
public:
    ScopedHttp() : m_limits(httpLimits()), m_hooks(httpHooks()) {
        limitWaits(std::chrono::seconds(2));
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

    /// For a test that waits for a limit to be reached.
    static void waitBriefly() { limitWaits(std::chrono::milliseconds(200)); }

    /// Each request's URL and its outcome.
    std::vector<std::pair<QString, QString>> finished;

private:
    static void limitWaits(std::chrono::milliseconds time) {
        httpLimits().connectTimeout = httpLimits().stallTime = time;
    }

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
