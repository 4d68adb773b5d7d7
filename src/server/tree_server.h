// SPDX-License-Identifier: MIT
#pragma once

#include "http/web_server.h"
#include "server/request_counts.h"
#include "tree/tree_answer.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

namespace raincast {

/// The image tree over HTTP: GET and HEAD of its paths. Other methods get status 405, other paths
/// 404. Whatever a client may keep has a tag for If-None-Match. Texts come in gzip's form to those
/// who take it.
class TreeServer {
public:
    using Limits = WebServer::Limits;
    struct Counts : WebServer::Counts {
        std::uint64_t notFound = 0;
    };

    /// Called in the server's thread, with the path decoded and without the query. It must be
    /// quick; it may answer later.
    using Ask = std::function<void(std::string_view path, TreeAsker asker)>;

    explicit TreeServer(Ask ask) : TreeServer(std::move(ask), Limits()) {}
    TreeServer(Ask ask, const Limits& limits);

    /// See WebServer.
    [[nodiscard]] bool start(const QString& address, std::uint16_t port);
    [[nodiscard]] int port() const { return m_server.port(); }
    void stop() { m_server.stop(); }

    /// So far. For any thread.
    [[nodiscard]] Counts counts() const;
    [[nodiscard]] const RequestCounts& requests() const { return *m_counts; }

private:
    void respond(const HttpRequest& request, const HttpReply& reply);

    Ask m_ask;
    /// Shared with answers that may come when the server has gone.
    std::shared_ptr<RequestCounts> m_counts;
    WebServer m_server;
};

} // namespace raincast
