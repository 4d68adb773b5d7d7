// SPDX-License-Identifier: MIT
#pragma once

#include "server/tree_answer.h"

#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace raincast {

/// The built-in HTTP server: GET and HEAD of whatever the given function answers, for one machine
/// or a home network. It knows no files. Serves in threads of its own.
///
/// A client can hold on to little: its requests and the connection end at the limits below, and
/// where there are too many connections a new one gets status 503 at once.
class TreeServer {
public:
    struct Limits {
        std::size_t requestBytes = 16 * 1024;      ///< request line and headers together
        int connections = 64;                      ///< at a time
        int connectionsPerAddress = 32;            ///< at a time, of one client
        int requestsPerConnection = 1000;          ///< then it is closed
        std::chrono::milliseconds idle{5'000};     ///< waiting for a request
        std::chrono::milliseconds request{10'000}; ///< reading it, all told
        std::chrono::milliseconds answer{30'000};  ///< sending the answer, all told
    };

    struct Counts {
        std::uint64_t requests = 0;
        std::uint64_t notFound = 0;
        std::uint64_t refused = 0; ///< connections beyond the limits
    };

    /// Called in the server's threads with the path, decoded and without the query. Nothing means
    /// status 404.
    using Answer = std::function<std::optional<TreeAnswer>(std::string_view path)>;

    explicit TreeServer(Answer answer);
    TreeServer(Answer answer, const Limits& limits);
    /// Ends like stop().
    ~TreeServer();
    TreeServer(const TreeServer&) = delete;
    TreeServer& operator=(const TreeServer&) = delete;

    /// Begins to serve at an address (a name, or numbers of either IP version) and port, 0 for any
    /// free one. False when it cannot be had: in use, or not this machine's.
    [[nodiscard]] bool start(const QString& address, std::uint16_t port);

    /// The port it serves at, from start() on.
    [[nodiscard]] int port() const;

    /// Ends all connections and waits for its threads. An answer that is being made is waited for;
    /// no client is.
    void stop();

    /// So far.
    [[nodiscard]] Counts counts() const;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace raincast
