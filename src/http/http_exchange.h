// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace raincast {

using HttpHeaders = std::vector<std::pair<std::string, std::string>>;

/// A request whose first line and headers have come. Its body, if it has one, is never read.
struct HttpRequest {
    std::string method; ///< "GET"
    std::string path;   ///< decoded, without host and query: "/status"; may hold any byte
    std::string query;  ///< as it was sent, without its "?"
    HttpHeaders headers;

    /// The value of the first header of a name in any case; empty when there is none.
    [[nodiscard]] std::string_view header(std::string_view name) const;
};

/// Splits the target of a request line ("/page?a=b", "http://host/page") into path and query.
void setTarget(HttpRequest& request, std::string_view target);

/// The answer to a request. The server adds the headers of the connection, the length and the date;
/// for HEAD it leaves the body out.
struct HttpAnswer {
    int status = 200;
    QByteArray body; ///< shared, not copied
    HttpHeaders headers;
};

/// Where the answer to one request goes. Copies stand for the same request; when the last of them
/// goes without an answer, the client gets status 500. For any thread, now or later.
class HttpReply {
public:
    class Slot;

    explicit HttpReply(std::shared_ptr<Slot> slot);

    /// Answers. Only the first call counts.
    void send(HttpAnswer answer) const;

    /// False when the answer is of no use any more: the client is gone.
    [[nodiscard]] bool isWanted() const;

private:
    class Promise;
    std::shared_ptr<const Promise> m_promise;
};

/// Answers requests. Called in the server's only thread, so it must be quick: leave work that takes
/// time to another thread, which answers later.
using HttpHandler = std::function<void(const HttpRequest& request, const HttpReply& reply)>;

} // namespace raincast
