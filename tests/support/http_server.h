// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace raincast {

/// A well-behaved HTTP server on a free loopback port, in threads of its own, for as long as it
/// lives. It serves what tests register by path and, below that, a folder with listings. The
/// process's transfers are kept from sending loopback requests to a proxy.
class HttpServer {
public:
    struct Response {
        int status = 200;
        QByteArray body;
        QByteArray type = "text/html";
        std::vector<std::pair<QByteArray, QByteArray>> headers;
    };
    struct Request {
        QString path; ///< decoded, without the query
        std::vector<std::pair<QByteArray, QByteArray>> headers;

        /// The value of a header by its name, without regard to case; empty when it is absent.
        [[nodiscard]] QByteArray header(const QByteArray& name) const;
        [[nodiscard]] bool hasHeader(const QByteArray& name) const;
    };
    /// Called in one of the server's threads.
    using Handler = std::function<Response(const Request&)>;

    HttpServer();
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    [[nodiscard]] int port() const;
    /// "127.0.0.1:PORT"
    [[nodiscard]] QString host() const;

    /// Answers a path, instead of the folder's file of that path.
    void handle(const QString& path, Handler handler);
    void serve(const QString& path, const QByteArray& body, int status = 200);

    /// Serves a folder's files by their paths below it; a path that ends in "/" gives a listing in
    /// the form of Python's server, names in order and quoted.
    void serveFolder(const QString& folder);

    /// What was asked for so far, in order of arrival.
    [[nodiscard]] std::vector<Request> requests() const;
    /// How often a path was asked for.
    [[nodiscard]] int count(const QString& path) const;
    /// Requests altogether, and over how many connections they came.
    [[nodiscard]] int count() const;
    [[nodiscard]] int connections() const;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace raincast
