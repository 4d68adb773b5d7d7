// SPDX-License-Identifier: MIT
#include "server/tree_server.h"

#include "server/connection_stream.h"

#include <netdb.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <map>
#include <mutex>
#include <thread>

namespace raincast {

namespace {

constexpr std::string_view kBusy = "HTTP/1.1 503 Service Unavailable\r\n"
                                   "Retry-After: 5\r\nContent-Length: 0\r\n"
                                   "Connection: close\r\n\r\n";
constexpr std::string_view kOverlong = "HTTP/1.1 431 Request Header Fields Too Large\r\n"
                                       "Content-Length: 0\r\nConnection: close\r\n\r\n";
constexpr int kBacklog = 128;

void sendAtOnce(int socket, std::string_view text) {
    [[maybe_unused]] const auto sent =
        send(socket, text.data(), text.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
}

/// Ends a connection. What the client sent and nobody read is taken first: closing on it would
/// reset the connection, and the answer might never be seen.
void finish(int socket) {
    shutdown(socket, SHUT_WR);
    char unread[4096];
    for (int pieces = 0; pieces < 16; ++pieces) {
        if (recv(socket, unread, sizeof unread, MSG_DONTWAIT) <= 0) {
            break;
        }
    }
    close(socket);
}

std::string addressOf(int socket) {
    sockaddr_storage storage{};
    socklen_t size = sizeof storage;
    auto* const address = reinterpret_cast<sockaddr*>(&storage);
    char text[NI_MAXHOST] = "";
    if (getpeername(socket, address, &size) == 0) {
        getnameinfo(address, size, text, sizeof text, nullptr, 0, NI_NUMERICHOST);
    }
    return text;
}

/// How many connections there are, of each address and altogether.
class Connections {
public:
    explicit Connections(const TreeServer::Limits& limits) : m_limits(limits) {}

    [[nodiscard]] bool enter(const std::string& address) {
        const std::lock_guard lock(m_mutex);
        if (m_all >= m_limits.connections ||
            m_byAddress[address] >= m_limits.connectionsPerAddress) {
            return false;
        }
        ++m_all;
        ++m_byAddress[address];
        return true;
    }

    void leave(const std::string& address) {
        const std::lock_guard lock(m_mutex);
        --m_all;
        if (--m_byAddress[address] == 0) {
            m_byAddress.erase(address);
        }
    }

private:
    const TreeServer::Limits& m_limits;
    std::mutex m_mutex;
    std::map<std::string, int> m_byAddress;
    int m_all = 0;
};

} // namespace

class TreeServer::Impl : public httplib::Server {
public:
    Impl(TreeServer::Answer answer, const Limits& limits)
        : m_answer(std::move(answer)), m_limits(limits), m_connections(m_limits),
          m_stopFd(eventfd(0, EFD_CLOEXEC)) {
        // A thread for every connection that may be, so that none waits in a queue, and one more,
        // which tells those beyond the limits.
        new_task_queue = [this] {
            return new httplib::ThreadPool(static_cast<std::size_t>(m_limits.connections + 1));
        };
        // Without the library's SO_REUSEPORT: a second server at the same port has to fail.
        set_socket_options([](int socket) {
            const int yes = 1;
            setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
        });
        set_tcp_nodelay(true);
        set_keep_alive_max_count(static_cast<std::size_t>(m_limits.requestsPerConnection));
        set_pre_routing_handler([this](const auto& request, auto& response) {
            respond(request, response);
            return HandlerResponse::Handled;
        });
    }

    ~Impl() override {
        end();
        close(m_stopFd);
    }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    [[nodiscard]] bool begin(const std::string& address, int port) {
        if (port == 0) {
            m_port = bind_to_any_port(address);
        } else {
            m_port = bind_to_port(address, port) ? port : -1;
        }
        if (m_port < 0) {
            return false;
        }
        // The library's own backlog of five makes clients of a busy moment wait for seconds.
        ::listen(svr_sock_, kBacklog);
        m_thread = std::thread([this] { listen_after_bind(); });
        while (!is_running()) {
            std::this_thread::yield();
        }
        return true;
    }

    void end() {
        if (!m_thread.joinable()) {
            return;
        }
        eventfd_write(m_stopFd, 1);
        Server::stop();
        m_thread.join();
    }

    [[nodiscard]] int port() const { return m_port; }
    [[nodiscard]] Counts counts() const { return {m_requests, m_notFound, m_refused}; }

private:
    bool process_and_close_socket(int socket) override {
        const std::string address = addressOf(socket);
        if (m_connections.enter(address)) {
            converse(socket);
            m_connections.leave(address);
        } else {
            ++m_refused;
            sendAtOnce(socket, kBusy);
        }
        finish(socket);
        return true;
    }

    void converse(int socket) {
        ConnectionStream stream(socket, m_stopFd, m_limits);
        for (int left = m_limits.requestsPerConnection; left > 0 && stream.waitForRequest();
             --left) {
            bool closed = false;
            bool hasBody = false;
            const auto inspect = [&hasBody](httplib::Request& request) {
                hasBody =
                    request.has_header("Content-Length") || request.has_header("Transfer-Encoding");
                // Thousands of overlapping ranges fit into a request: the whole file is a valid
                // answer to them, too.
                request.ranges.clear();
            };
            // A body is never read, so nothing that follows it would be understood.
            if (!process_request(stream, left == 1, closed, inspect) || closed || hasBody) {
                break;
            }
        }
        if (stream.overlong() && !stream.answered()) {
            sendAtOnce(socket, kOverlong);
        }
    }

    void respond(const httplib::Request& request, httplib::Response& response) {
        ++m_requests;
        response.set_header("X-Content-Type-Options", "nosniff");
        if (request.method != "GET" && request.method != "HEAD") {
            response.status = 405;
            response.set_header("Allow", "GET, HEAD");
            return;
        }
        const auto answer = m_answer(request.path);
        if (!answer) {
            ++m_notFound;
            response.status = 404;
            response.set_content("Nothing has this name here.\n", "text/plain");
            return;
        }
        response.status = 200;
        response.set_header(
            "Cache-Control", answer->maxAgeSeconds > 0
                                 ? "max-age=" + std::to_string(answer->maxAgeSeconds)
                                 : "no-cache"
        );
        response.set_content(
            answer->body.constData(), static_cast<std::size_t>(answer->body.size()), answer->type
        );
    }

    TreeServer::Answer m_answer;
    Limits m_limits;
    Connections m_connections;
    std::atomic<std::uint64_t> m_requests = 0;
    std::atomic<std::uint64_t> m_notFound = 0;
    std::atomic<std::uint64_t> m_refused = 0;
    int m_stopFd;
    int m_port = 0;
    std::thread m_thread;
};

TreeServer::TreeServer(Answer answer) : TreeServer(std::move(answer), Limits()) {}

TreeServer::TreeServer(Answer answer, const Limits& limits)
    : m_impl(std::make_unique<Impl>(std::move(answer), limits)) {}

TreeServer::~TreeServer() = default;

bool TreeServer::start(const QString& address, std::uint16_t port) {
    return m_impl->begin(address.toStdString(), port);
}

int TreeServer::port() const {
    return m_impl->port();
}

void TreeServer::stop() {
    m_impl->end();
}

TreeServer::Counts TreeServer::counts() const {
    return m_impl->counts();
}

} // namespace raincast
