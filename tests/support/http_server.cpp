// SPDX-License-Identifier: MIT
#include "support/http_server.h"

#include "support/loopback.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <httplib.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <set>
#include <thread>

namespace raincast {

namespace {

HttpServer::Request toRequest(const httplib::Request& request) {
    HttpServer::Request result{QString::fromStdString(request.path), {}};
    for (const auto& [name, value] : request.headers) {
        result.headers.emplace_back(QByteArray::fromStdString(name), value.c_str());
    }
    return result;
}

void fill(httplib::Response& response, const HttpServer::Response& from) {
    response.status = from.status;
    for (const auto& [name, value] : from.headers) {
        response.set_header(name.toStdString(), value.toStdString());
    }
    // A 304 has no body: a client takes what follows its head for the next answer.
    if (from.status != 304) {
        response.set_content(from.body.toStdString(), from.type.toStdString());
    }
}

// <li><a href="MUX_20190519_0446_N0R.gif">MUX_20190519_0446_N0R.gif</a></li>
QByteArray listing(const QDir& folder) {
    QByteArray body = "<!DOCTYPE HTML>\n<html>\n<body>\n<ul>\n";
    const auto entries = folder.entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& entry : entries) {
        const QByteArray name = entry.fileName().toUtf8() + (entry.isDir() ? "/" : "");
        body += "<li><a href=\"" + name + "\">" + name + "</a></li>\n";
    }
    return body + "</ul>\n</body>\n</html>\n";
}

HttpServer::Response fromFolder(const QString& folder, const QString& path) {
    const QString local = folder + path;
    if (path.endsWith('/') && QFileInfo(local).isDir()) {
        return {200, listing(QDir(local)), "text/html", {}};
    }
    QFile file(local);
    if (QFileInfo(local).isFile() && file.open(QIODevice::ReadOnly)) {
        return {200, file.readAll(), "application/octet-stream", {}};
    }
    return {404, "<html><body>Not found</body></html>\n", "text/html", {}};
}

} // namespace

QByteArray HttpServer::Request::header(const QByteArray& name) const {
    const auto found = std::find_if(headers.begin(), headers.end(), [&](const auto& header) {
        return header.first.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == headers.end() ? QByteArray() : found->second;
}

bool HttpServer::Request::hasHeader(const QByteArray& name) const {
    return std::any_of(headers.begin(), headers.end(), [&](const auto& header) {
        return header.first.compare(name, Qt::CaseInsensitive) == 0;
    });
}

class HttpServer::Impl {
public:
    Impl() {
        keepLoopbackFromProxies();
        m_server.set_tcp_nodelay(true);
        m_server.set_keep_alive_max_count(100'000);
        m_server.set_pre_routing_handler([this](const auto& request, auto& response) {
            fill(response, answer(request));
            return httplib::Server::HandlerResponse::Handled;
        });
        m_port = m_server.bind_to_any_port("127.0.0.1");
        m_thread = std::thread([this] { m_server.listen_after_bind(); });
        while (!m_server.is_running()) {
            std::this_thread::yield();
        }
    }

    ~Impl() {
        m_server.stop();
        m_thread.join();
    }

    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    int m_port = 0;
    mutable std::mutex m_mutex; ///< guards everything below
    std::map<QString, Handler> m_handlers;
    QString m_folder;
    std::vector<Request> m_requests;
    std::set<int> m_peers; ///< their ports: one per connection

private:
    Response answer(const httplib::Request& from) {
        const Request request = toRequest(from);
        Handler handler;
        QString folder;
        {
            const std::lock_guard lock(m_mutex);
            m_requests.push_back(request);
            m_peers.insert(from.remote_port);
            const auto found = m_handlers.find(request.path);
            handler = found == m_handlers.end() ? Handler() : found->second;
            folder = m_folder;
        }
        return handler ? handler(request) : fromFolder(folder, request.path);
    }

    httplib::Server m_server;
    std::thread m_thread;
};

HttpServer::HttpServer() : m_impl(std::make_unique<Impl>()) {}
HttpServer::~HttpServer() = default;

int HttpServer::port() const {
    return m_impl->m_port;
}

QString HttpServer::host() const {
    return loopbackHost(m_impl->m_port);
}

void HttpServer::handle(const QString& path, Handler handler) {
    const std::lock_guard lock(m_impl->m_mutex);
    m_impl->m_handlers[path] = std::move(handler);
}

void HttpServer::serve(const QString& path, const QByteArray& body, int status) {
    handle(path, [body, status](const Request&) {
        return Response{status, body, "text/html", {}};
    });
}

void HttpServer::serveFolder(const QString& folder) {
    const std::lock_guard lock(m_impl->m_mutex);
    m_impl->m_folder = folder;
}

std::vector<HttpServer::Request> HttpServer::requests() const {
    const std::lock_guard lock(m_impl->m_mutex);
    return m_impl->m_requests;
}

int HttpServer::count(const QString& path) const {
    const std::lock_guard lock(m_impl->m_mutex);
    return static_cast<int>(std::count_if(
        m_impl->m_requests.begin(), m_impl->m_requests.end(),
        [&](const Request& request) { return request.path == path; }
    ));
}

int HttpServer::count() const {
    const std::lock_guard lock(m_impl->m_mutex);
    return static_cast<int>(m_impl->m_requests.size());
}

int HttpServer::connections() const {
    const std::lock_guard lock(m_impl->m_mutex);
    return static_cast<int>(m_impl->m_peers.size());
}

} // namespace raincast
