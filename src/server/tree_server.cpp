// SPDX-License-Identifier: MIT
#include "server/tree_server.h"

#include "http/http_negotiation.h"

#include <array>

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
        {kNoSniffing, {"Content-Type", "text/plain"}, {"Cache-Control", "no-cache"}}};
}

std::string_view cacheControlOf(Keeping keeping) {
    constexpr std::array<std::string_view, 5> kValues = {
        "public, max-age=31536000, immutable", "max-age=86400", "max-age=30", "no-cache",
        "no-store"};
    return kValues[static_cast<std::size_t>(keeping)];
}

/// Pictures are packed already.
bool isText(std::string_view type) {
    return type.starts_with("text/") || type.starts_with("application/json");
}

/// A tag of its own for bytes in gzip's form.
std::string gzipTag(const std::string& tag) {
    return tag.substr(0, tag.size() - 1) + "-gzip\"";
}

/// What the request has to do with the answer.
struct Wishes {
    std::string ifNoneMatch;
    bool gzip = false;
};

/// What has a tag is sent only when its bytes are others than those that the client knows.
HttpAnswer found(const TreeAnswer& answer, const Wishes& wishes) {
    HttpAnswer result{answer.status, answer.body.bytes(), {kNoSniffing}};
    auto& headers = result.headers;
    headers.emplace_back("Content-Type", answer.type);
    headers.emplace_back("Cache-Control", cacheControlOf(answer.keeping));
    if (!answer.source.empty()) {
        headers.emplace_back("Raincast-Source", answer.source);
    }
    const bool isPacked = isText(answer.type) && wishes.gzip && !answer.body.gzipped().isEmpty();
    if (isText(answer.type)) {
        headers.emplace_back("Vary", "Accept-Encoding");
    }
    if (isPacked) {
        headers.emplace_back("Content-Encoding", "gzip");
        result.body = answer.body.gzipped();
    }
    if (answer.keeping == Keeping::never) {
        return result;
    }
    const std::string tag = isPacked ? gzipTag(answer.body.tag()) : answer.body.tag();
    headers.emplace_back("ETag", tag);
    if (namesTag(wishes.ifNoneMatch, tag)) {
        result.status = 304;
        result.body.clear();
    }
    return result;
}

} // namespace

TreeServer::TreeServer(Ask ask, const Limits& limits)
    : m_ask(std::move(ask)), m_counts(std::make_shared<RequestCounts>()),
      m_server(
          [this](const HttpRequest& request, const HttpReply& reply) { respond(request, reply); },
          limits
      ) {}

void TreeServer::respond(const HttpRequest& request, const HttpReply& reply) {
    if (request.method != "GET" && request.method != "HEAD") {
        m_counts->note(requestKindOf(request.path, false), 405, 0);
        return reply.send(notAllowed());
    }
    const Wishes wishes{
        std::string(request.header("If-None-Match")),
        acceptsGzip(request.header("Accept-Encoding"))};
    const auto tell = [reply, wishes, counts = m_counts, path = request.path,
                       isRead = request.method == "GET"](const std::optional<TreeAnswer>& answer) {
        HttpAnswer result = answer ? found(*answer, wishes) : notFound();
        counts->note(
            requestKindOf(path, answer.has_value()), result.status, isRead ? result.body.size() : 0
        );
        reply.send(std::move(result));
    };
    m_ask(request.path, {tell, [reply] { return reply.isWanted(); }});
}

bool TreeServer::start(const QString& address, std::uint16_t port) {
    return m_server.start(address.toStdString(), port);
}

TreeServer::Counts TreeServer::counts() const {
    return {m_server.counts(), m_counts->withStatus(404)};
}

} // namespace raincast
