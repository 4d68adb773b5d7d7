// SPDX-License-Identifier: MIT
#pragma once

#include "server/connection_table.h"
#include "server/http_exchange.h"

#include <cstdint>
#include <memory>

namespace raincast {

/// An HTTP server for one machine or a home network, in a thread of its own. It knows no files and
/// no paths: a handler answers every request.
///
/// A client can hold on to little: requests, answers and connections end at the limits below, and
/// connections that are of little use make room for new ones (see ConnectionTable). Only where that
/// is not possible a new connection gets status 503 at once. What is no HTTP gets status 400, and
/// the connection ends there.
class WebServer {
public:
    struct Limits : ConnectionLimits {
        std::size_t requestBytes = 16 * 1024; ///< request line and headers together
        int requestsPerConnection = 1000;     ///< then it is closed
        /// How long a connection that is closed is still read, so that its client sees the answer.
        std::chrono::milliseconds farewell{1'000};
    };

    struct Counts {
        std::uint64_t requests = 0;
        std::uint64_t refused = 0;   ///< connections beyond the limits
        std::uint64_t displaced = 0; ///< connections that made room for others
    };

    WebServer(HttpHandler handler, const Limits& limits);
    /// Ends like stop().
    ~WebServer();
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;

    /// Begins to serve at an address (a name, or numbers of either IP version) and port, 0 for any
    /// free one. False, with errno set where the system gives a reason, when it cannot be had: in
    /// use, or not this machine's.
    [[nodiscard]] bool start(const std::string& address, int port);

    /// The port it serves at, from start() on.
    [[nodiscard]] int port() const;

    /// Ends all connections and waits for its thread. Waits for no client and for no answer: those
    /// that come later are of no use to anybody.
    void stop();

    /// So far. For any thread.
    [[nodiscard]] Counts counts() const;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace raincast
