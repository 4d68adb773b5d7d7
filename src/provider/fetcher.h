// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

namespace raincast {

/// A GET request.
struct FetchRequest {
    QByteArray url;            ///< whole, encoded as it is sent
    qint64 mostBytes = 0;      ///< a longer body ends the request
    QByteArray etag{};         ///< asks only for a body with another one, unless empty
    QByteArray lastModified{}; ///< asks only for a later one, unless empty
    QByteArray accept = "*/*";
    bool mayBeAbsent = false; ///< 404 is a good answer, too
};

/// What became of a request.
struct FetchAnswer {
    enum class Failure {
        none,        ///< an answer came whole
        unreachable, ///< no connection: no such name, refused, no route, too late
        broken,      ///< connected, but no whole answer: TLS, cut off, stalled, too large
    };

    Failure failure = Failure::none;
    int status = 0;  ///< of HTTP; 0 without an answer
    QString problem; ///< in words, unless an answer came whole
    QByteArray body{};
    QByteArray etag{};         ///< as it came, with its quotes
    QByteArray lastModified{}; ///< as it came
    QByteArray retryAfter{};   ///< as it came
};

/// Does requests beside each other.
class Fetcher {
public:
    using Done = std::function<void(FetchAnswer)>;

    virtual ~Fetcher() = default;

    /// Begins a request. `done` is called later, once, never from within this call.
    virtual void get(FetchRequest request, Done done) = 0;
};

} // namespace raincast
