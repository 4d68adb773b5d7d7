// SPDX-License-Identifier: MIT
#pragma once

#include "provider/curl_fetcher.h"

#include <thread>

namespace raincast {

class LiveSource;

/// The thread in which a source of live frames talks to its providers.
class LiveNetwork {
public:
    /// `agent` says who asks.
    explicit LiveNetwork(QByteArray agent) : m_fetcher(std::move(agent)) {}

    [[nodiscard]] CurlFetcher& fetcher() { return m_fetcher; }

    /// Begins; the source must live until stop(), and this object longer than the source.
    void start(LiveSource& source);

    /// Ends what is under way.
    void stop();

private:
    CurlFetcher m_fetcher;
    std::jthread m_thread;
};

} // namespace raincast
