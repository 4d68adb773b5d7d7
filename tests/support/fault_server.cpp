// SPDX-License-Identifier: MIT
#include "support/fault_server.h"

#include "support/loopback.h"

#include <QList>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

namespace raincast {

QByteArray FaultConnection::readRequest() {
    while (!m_rest.contains("\r\n\r\n")) {
        char buffer[4096];
        const ssize_t got = recv(m_socket, buffer, sizeof buffer, 0);
        if (got <= 0) {
            return {};
        }
        m_rest.append(buffer, got);
    }
    const qsizetype end = m_rest.indexOf("\r\n\r\n") + 4;
    const QByteArray request = m_rest.first(end);
    m_rest.remove(0, end);
    return request;
}

bool FaultConnection::send(const QByteArray& bytes) {
    QByteArrayView left = bytes;
    while (!left.isEmpty()) {
        const ssize_t sent =
            ::send(m_socket, left.data(), static_cast<size_t>(left.size()), MSG_NOSIGNAL);
        if (sent <= 0) {
            m_closing = true;
            return false;
        }
        left = left.sliced(sent);
    }
    return true;
}

bool FaultConnection::pause(std::chrono::milliseconds time) {
    pollfd watched{m_socket, POLLRDHUP, 0};
    const bool timeIsUp = poll(&watched, 1, static_cast<int>(time.count())) == 0;
    m_closing = m_closing || !timeIsUp;
    return timeIsUp;
}

void FaultConnection::reset() {
    const linger atOnce{1, 0};
    setsockopt(m_socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    m_closing = true;
}

FaultServer::FaultServer() : FaultServer(answers::respond(404, "Not found\n")) {}

FaultServer::FaultServer(Answer answer)
    : m_listener(bindLoopback(16, m_port)), m_otherwise(std::move(answer)) {
    keepLoopbackFromProxies();
    m_acceptor = std::thread([this] { accept(); });
}

FaultServer::~FaultServer() {
    m_stopping = true;
    shutdown(m_listener, SHUT_RDWR);
    m_acceptor.join();
    {
        const std::lock_guard lock(m_mutex);
        for (const int socket : m_sockets) {
            shutdown(socket, SHUT_RDWR);
        }
    }
    for (std::thread& talker : m_talkers) {
        talker.join();
    }
    ::close(m_listener);
}

QString FaultServer::host() const {
    return loopbackHost(m_port);
}

void FaultServer::on(const QString& path, Answer answer) {
    const std::lock_guard lock(m_mutex);
    m_answers[path] = std::move(answer);
}

void FaultServer::otherwise(Answer answer) {
    const std::lock_guard lock(m_mutex);
    m_otherwise = std::move(answer);
}

std::vector<QByteArray> FaultServer::requests() const {
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

int FaultServer::count(const QString& path) const {
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(std::count_if(
        m_requests.begin(), m_requests.end(),
        [&](const QByteArray& head) { return requestPath(head) == path; }
    ));
}

int FaultServer::connections() const {
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_talkers.size());
}

int FaultServer::openConnections() const {
    const std::lock_guard lock(m_mutex);
    return static_cast<int>(m_sockets.size());
}

void FaultServer::accept() {
    while (!m_stopping) {
        const int socket = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0) {
            continue;
        }
        const std::lock_guard lock(m_mutex);
        m_sockets.insert(socket);
        m_talkers.emplace_back([this, socket] { talk(socket); });
    }
}

void FaultServer::talk(int socket) {
    FaultConnection connection(socket);
    while (!m_stopping && !connection.closing()) {
        const QByteArray request = connection.readRequest();
        if (request.isEmpty()) {
            break;
        }
        answerTo(request)(connection);
    }
    const std::lock_guard lock(m_mutex);
    m_sockets.erase(socket);
    ::close(socket);
}

void FaultServer::choose(std::function<Answer(const QByteArray&)> chooser) {
    const std::lock_guard lock(m_mutex);
    m_chooser = std::move(chooser);
}

FaultServer::Answer FaultServer::answerTo(const QByteArray& request) {
    const std::lock_guard lock(m_mutex);
    m_requests.push_back(request);
    if (m_chooser) {
        return m_chooser(request);
    }
    const auto found = m_answers.find(requestPath(request));
    return found == m_answers.end() ? m_otherwise : found->second;
}

QString requestPath(const QByteArray& head) {
    const QList<QByteArray> words = head.left(head.indexOf("\r\n")).split(' ');
    return words.size() < 2 ? QString() : QString::fromUtf8(words[1]);
}

namespace answers {

namespace {

QByteArray headWithLength(qsizetype length) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + QByteArray::number(length) + "\r\n\r\n";
}

constexpr qsizetype kNeverReached = 1'000'000;

} // namespace

QByteArray response(int status, const QByteArray& body, const QByteArray& more) {
    return "HTTP/1.1 " + QByteArray::number(status) +
           " Whatever\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n" + more +
           "\r\n" + body;
}

Answer respond(int status, const QByteArray& body, const QByteArray& more) {
    return [=](FaultConnection& to) { to.send(response(status, body, more)); };
}

Answer redirect(int status, const QByteArray& location) {
    return respond(status, "<a href=\"" + location + "\">", "Location: " + location + "\r\n");
}

Answer raw(const QByteArray& bytes) {
    return [=](FaultConnection& to) {
        to.send(bytes);
        to.close();
    };
}

Answer nothing() {
    return raw({});
}

Answer cut(const QByteArray& body, qsizetype kept) {
    return raw(headWithLength(body.size()) + body.first(kept));
}

Answer reset(const QByteArray& body, qsizetype kept) {
    return [=](FaultConnection& to) {
        to.send(headWithLength(body.size()) + body.first(kept));
        to.reset();
    };
}

Answer wrongLength(const QByteArray& body, qsizetype claimed) {
    return raw(headWithLength(claimed) + body);
}

Answer chunked(const QByteArray& body, qsizetype size, bool complete) {
    return [=](FaultConnection& to) {
        to.send("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n");
        for (qsizetype at = 0; at < body.size(); at += size) {
            const QByteArray chunk = body.mid(at, size);
            to.send(QByteArray::number(chunk.size(), 16) + "\r\n" + chunk + "\r\n");
        }
        if (complete) {
            to.send("0\r\n\r\n");
        } else {
            to.close();
        }
    };
}

Answer stall(const QByteArray& body) {
    return [=](FaultConnection& to) {
        to.send(headWithLength(kNeverReached) + body);
        to.waitForEnd();
    };
}

Answer drip(std::chrono::milliseconds interval) {
    return [=](FaultConnection& to) {
        to.send(headWithLength(kNeverReached));
        while (to.pause(interval) && to.send("x")) {
        }
    };
}

Answer endlessHeaders() {
    return [](FaultConnection& to) {
        to.send("HTTP/1.1 200 OK\r\n");
        const QByteArray lines =
            QByteArray("X-More: of the same, and no end of it\r\n").repeated(99);
        while (to.send(lines)) {
        }
    };
}

Answer silence() {
    return [](FaultConnection& to) { to.waitForEnd(); };
}

Answer hugeListing(qint64 bytes) {
    return [=](FaultConnection& to) {
        to.send("HTTP/1.1 200 OK\r\n\r\n<html>\n");
        qint64 sent = 0;
        for (int number = 0; sent < bytes;) {
            QByteArray lines;
            for (int i = 0; i < 1000; ++i) {
                const QByteArray digits = QByteArray::number(number++).rightJustified(7, '0');
                lines += "<a href=\"F" + digits + ".gif\">F" + digits + ".gif</a>\n";
            }
            sent += lines.size();
            if (!to.send(lines)) {
                return;
            }
        }
        to.close();
    };
}

} // namespace answers

} // namespace raincast
