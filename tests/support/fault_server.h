// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace raincast {

/// One connection of a FaultServer, as its answers see it.
class FaultConnection {
public:
    explicit FaultConnection(int socket) : m_socket(socket) {}

    /// The next request up to its blank line; empty when the client has gone.
    [[nodiscard]] QByteArray readRequest();

    /// Sends everything; false when the client (or the server) has gone.
    bool send(const QByteArray& bytes);

    /// Waits, but no longer than until the client or the server goes; true when time is up.
    bool pause(std::chrono::milliseconds time);

    /// Waits until the client or the server goes.
    void waitForEnd() { pause(std::chrono::milliseconds(-1)); }

    /// Ends the connection after this answer, in good order or as a crash would end it.
    void close() { m_closing = true; }
    void reset();

    [[nodiscard]] bool closing() const { return m_closing; }

private:
    int m_socket;
    bool m_closing = false;
    QByteArray m_rest; ///< what came after the last request
};

/// An HTTP server on a free loopback port that answers as no good server would: each path is
/// answered with whatever bytes, pauses and breaks its answer makes. Paths without an answer get
/// 404. Each connection has a thread; all of them end with the server, whatever they do.
class FaultServer {
public:
    /// Called in the connection's thread, after the request has been read.
    using Answer = std::function<void(FaultConnection&)>;

    FaultServer();
    /// With one answer for every path.
    explicit FaultServer(Answer answer);
    ~FaultServer();
    FaultServer(const FaultServer&) = delete;
    FaultServer& operator=(const FaultServer&) = delete;

    [[nodiscard]] int port() const { return m_port; }
    /// "127.0.0.1:PORT"
    [[nodiscard]] QString host() const;

    void on(const QString& path, Answer answer);
    void otherwise(Answer answer);
    /// Lets a function choose the answer to each request by its head, from the first line on.
    void choose(std::function<Answer(const QByteArray& head)> chooser);

    /// The request heads so far as they came in, and the number of connections.
    [[nodiscard]] std::vector<QByteArray> requests() const;
    [[nodiscard]] int count(const QString& path) const;
    [[nodiscard]] int connections() const;
    /// Those that are open.
    [[nodiscard]] int openConnections() const;

private:
    void accept();
    void talk(int socket);
    Answer answerTo(const QByteArray& request);

    int m_port = 0;
    int m_listener;
    std::atomic<bool> m_stopping = false;
    mutable std::mutex m_mutex; ///< guards everything below but the acceptor
    std::map<QString, Answer> m_answers;
    Answer m_otherwise;
    std::function<Answer(const QByteArray&)> m_chooser;
    std::vector<QByteArray> m_requests;
    std::set<int> m_sockets;
    std::vector<std::thread> m_talkers;
    std::thread m_acceptor;
};

/// The path of a request head's first line: "GET /a/b HTTP/1.1" gives "/a/b".
[[nodiscard]] QString requestPath(const QByteArray& head);

/// Ready-made answers. Those that end the connection say so.
namespace answers {

using Answer = FaultServer::Answer;

/// "HTTP/1.1 STATUS", Content-Length, further header lines (each with its \r\n) and the body.
[[nodiscard]] QByteArray response(int status, const QByteArray& body, const QByteArray& more = {});

/// A good response.
[[nodiscard]] Answer respond(int status, const QByteArray& body, const QByteArray& more = {});
/// A redirect with that Location.
[[nodiscard]] Answer redirect(int status, const QByteArray& location);
/// These bytes, then the connection's end.
[[nodiscard]] Answer raw(const QByteArray& bytes);
/// The connection's end without a byte.
[[nodiscard]] Answer nothing();
/// A body that breaks off after `kept` bytes with the connection; or with its reset.
[[nodiscard]] Answer cut(const QByteArray& body, qsizetype kept);
[[nodiscard]] Answer reset(const QByteArray& body, qsizetype kept);
/// A body whose Content-Length is `claimed`; then the connection's end.
[[nodiscard]] Answer wrongLength(const QByteArray& body, qsizetype claimed);
/// A body in chunks of that size; without `complete` it breaks off before the last chunk, and
/// with it the connection.
[[nodiscard]] Answer chunked(const QByteArray& body, qsizetype size, bool complete = true);
/// Good headers and `body`, then not another byte, for ever.
[[nodiscard]] Answer stall(const QByteArray& body);
/// Good headers, then one byte of the body after each interval, for ever.
[[nodiscard]] Answer drip(std::chrono::milliseconds interval);
/// Header lines without end.
[[nodiscard]] Answer endlessHeaders();
/// Not a byte, for ever.
[[nodiscard]] Answer silence();
/// A listing of at least `bytes` bytes, made as it is sent: names "F0000000.gif" and so on.
[[nodiscard]] Answer hugeListing(qint64 bytes);

} // namespace answers

} // namespace raincast
