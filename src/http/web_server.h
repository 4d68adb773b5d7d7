// SPDX-License-Identifier: MIT
#pragma once

#include "http/connection_table.h"
#include "http/http_exchange.h"

#include <cstdint>
#include <memory>

namespace raincast {

/// An HTTP server for one machine or a home network, in a thread of its own. A handler answers
/// every request; the server knows no files and no paths.
///
/// A client can hold on to little: requests, answers and connections end at the limits below, and
/// connections that are of little use make room for new ones (see ConnectionTable). If none can, a
/// new connection gets status 503 at once. Bytes that are not HTTP get status 400, and the
/// connection ends.
class WebServer {
public:
    struct Limits : ConnectionLimits {
        std::size_t requestBytes = 16 * 1024; ///< request line and headers together
        int requestsPerConnection = 1000;     ///< then it is closed
        /// How long a closed connection is still read, so that its client sees the answer.
        std::chrono::milliseconds farewell{1'000};
    };

    struct Counts {
        std::uint64_t requests = 0;
        std::uint64_t refused = 0;   ///< connections beyond the limits
        std::uint64_t displaced = 0; ///< connections that made room for others
        std::uint64_t open = 0;      ///< connections now
    };

    WebServer(HttpHandler handler, const Limits& limits);
    /// Ends like stop().
    ~WebServer();
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    /// Begins to serve at an address (a name, or numbers of either IP version) and port, 0 for any
    /// free one. False when it is in use or not this machine's, with errno set if the system gives
    /// a reason.
    [[nodiscard]] bool start(const std::string& address, int port);

    /// The port it serves at, from start() on.
    [[nodiscard]] int port() const;

    /// Ends all connections and waits for its thread, but for no client and no answer. Later
    /// answers are dropped.
    void stop();

    /// So far. For any thread.
    [[nodiscard]] Counts counts() const;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace raincast
