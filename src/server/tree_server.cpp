// SPDX-License-Identifier: MIT
#include "server/tree_server.h"

namespace raincast {

namespace {

const HttpHeaders::value_type kNoSniffing{"X-Content-Type-Options", "nosniff"};

HttpAnswer notAllowed() {
    return {405, {}, {kNoSniffing, {"Allow", "GET, HEAD"}}};
}

HttpAnswer notFound() {
    return {
        404,
        QByteArrayLiteral("Nothing has this name here.\n"),
        {kNoSniffing, {"Content-Type", "text/plain"}}};
}

HttpAnswer found(const TreeAnswer& answer) {
    const std::string caching =
        answer.maxAgeSeconds > 0 ? "max-age=" + std::to_string(answer.maxAgeSeconds) : "no-cache";
    return {
        200, answer.body, {kNoSniffing, {"Content-Type", answer.type}, {"Cache-Control", caching}}};
}

} // namespace

TreeServer::TreeServer(Ask ask, const Limits& limits)
    : m_ask(std::move(ask)), m_notFound(std::make_shared<std::atomic<std::uint64_t>>(0)),
      m_server(
          [this](const HttpRequest& request, const HttpReply& reply) { respond(request, reply); },
          limits
      ) {}

void TreeServer::respond(const HttpRequest& request, const HttpReply& reply) {
    if (request.method != "GET" && request.method != "HEAD") {
        return reply.send(notAllowed());
    }
    const auto tell = [reply, count = m_notFound](const std::optional<TreeAnswer>& answer) {
        *count += answer ? 0 : 1;
        reply.send(answer ? found(*answer) : notFound());
    };
    m_ask(request.path, {tell, [reply] { return reply.isWanted(); }});
}

bool TreeServer::start(const QString& address, std::uint16_t port) {
    return m_server.start(address.toStdString(), port);
}

TreeServer::Counts TreeServer::counts() const {
    return {m_server.counts(), *m_notFound};
}

} // namespace raincast
