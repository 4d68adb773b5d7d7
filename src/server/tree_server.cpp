// SPDX-License-Identifier: MIT
#include "server/tree_server.h"

#include <QCryptographicHash>

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

/// Tells a body from every other one.
std::string etagOf(const QByteArray& body) {
    return '"' +
           QCryptographicHash::hash(body, QCryptographicHash::Sha1).toHex().left(20).toStdString() +
           '"';
}

/// What must be asked for again has a tag, so that its bytes are sent only when they are others.
HttpAnswer found(const TreeAnswer& answer, std::string_view knownTag) {
    HttpAnswer result{200, answer.body, {kNoSniffing, {"Content-Type", answer.type}}};
    if (!answer.source.empty()) {
        result.headers.emplace_back("Raincast-Source", answer.source);
    }
    if (answer.maxAgeSeconds > 0) {
        result.headers.emplace_back(
            "Cache-Control", "max-age=" + std::to_string(answer.maxAgeSeconds)
        );
        return result;
    }
    const std::string tag = etagOf(answer.body);
    result.headers.emplace_back("Cache-Control", "no-cache");
    result.headers.emplace_back("ETag", tag);
    if (knownTag.find(tag) != std::string_view::npos) {
        result.status = 304;
        result.body.clear();
    }
    return result;
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
    const auto tell = [reply, count = m_notFound,
                       tag = std::string(request.header("If-None-Match")
                       )](const std::optional<TreeAnswer>& answer) {
        *count += answer ? 0 : 1;
        reply.send(answer ? found(*answer, tag) : notFound());
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
