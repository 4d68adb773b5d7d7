// SPDX-License-Identifier: MIT
#include "http/web_server.h"

#include "http/client_address.h"
#include "http/farewells.h"
#include "http/http_conversations.h"
#include "http/http_reply_slot.h"
#include "http/listening_socket.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <thread>

namespace raincast {

namespace {

using Time = ConnectionTable::Time;
using Phase = ConnectionTable::Phase;
using namespace std::chrono_literals;

constexpr std::string_view kFull = "HTTP/1.1 503 Service Unavailable\r\n"
                                   "Retry-After: 5\r\nContent-Length: 0\r\n"
                                   "Connection: close\r\n\r\n";
// How long to accept no connection when the system has no descriptors left.
constexpr auto kBreath = 100ms;

Time now() {
    return std::chrono::steady_clock::now();
}

/// Threads that make answers put the numbers of finished ones here.
class Mailbox {
public:
    [[nodiscard]] int descriptor() const { return m_event.get(); }

    void wake() const { eventfd_write(m_event.get(), 1); }

    void post(int id) {
        {
            const std::lock_guard lock(m_mutex);
            m_ids.push_back(id);
        }
        wake();
    }

    [[nodiscard]] std::vector<int> take() {
        eventfd_t count = 0;
        eventfd_read(m_event.get(), &count);
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_ids, {});
    }

private:
    FileDescriptor m_event{eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
    std::mutex m_mutex;
    std::vector<int> m_ids;
};

} // namespace

class WebServer::Impl : public HttpConversations::Events {
public:
    Impl(HttpHandler handler, const Limits& limits)
        : m_handler(std::move(handler)), m_limits(limits), m_table(limits),
          m_farewells(static_cast<std::size_t>(limits.connections), limits.farewell) {}

    ~Impl() override { end(); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    [[nodiscard]] bool begin(const std::string& address, int port) {
        m_listener = listenAt(address, port);
        if (!m_listener.isOpen()) {
            return false;
        }
        m_port = portOf(m_listener);
        m_library = std::make_unique<HttpConversations>(*this, m_limits.requestBytes);
        watch(m_listener.get(), EPOLLIN);
        watch(m_mailbox->descriptor(), EPOLLIN);
        watch(m_library->descriptor(), EPOLLIN);
        m_thread = std::thread([this] { run(); });
        return true;
    }

    void end() {
        if (m_thread.joinable()) {
            m_isStopping = true;
            m_mailbox->wake();
            m_thread.join();
        }
    }

    [[nodiscard]] int port() const { return m_port; }
    [[nodiscard]] Counts counts() const { return {m_requests, m_refused, m_displaced, m_open}; }

private:
    struct Connection {
        /// A second descriptor of the library's socket, to end it, and to say farewell when the
        /// library has closed its own.
        FileDescriptor socket;
        int requests = 0;
        bool isHungUp = false;
        std::shared_ptr<HttpReply::Slot> slot = nullptr;
    };

    void run() {
        while (!m_isStopping) {
            wait();
            m_library->run();
            endOverdue();
        }
        m_listener.reset();
        for (const auto& [id, connection] : m_connections) {
            shutdown(connection.socket.get(), SHUT_RDWR);
        }
        m_library.reset();
    }

    void wait() {
        std::array<epoll_event, 64> events{};
        const int count =
            epoll_wait(m_epoll.get(), events.data(), static_cast<int>(events.size()), patience());
        for (int i = 0; i < count; ++i) {
            dispatch(events[static_cast<std::size_t>(i)]);
        }
    }

    void dispatch(const epoll_event& event) {
        const int descriptor = event.data.fd;
        if (descriptor == m_listener.get()) {
            letIn();
        } else if (descriptor == m_mailbox->descriptor()) {
            for (const int id : m_mailbox->take()) {
                deliver(id);
            }
        } else if (descriptor != m_library->descriptor() && !m_farewells.read(descriptor)) {
            noteInput(descriptor, (event.events & (EPOLLHUP | EPOLLERR)) != 0);
        }
    }

    /// Milliseconds until there is something to do without any event.
    [[nodiscard]] int patience() const {
        const Time present = now();
        auto least = m_library->timeout().value_or(1h);
        for (const auto& deadline :
             {m_table.nextDeadline(), m_farewells.nextDeadline(), m_listenAgain}) {
            if (deadline) {
                least = std::min(
                    least, std::chrono::ceil<std::chrono::milliseconds>(*deadline - present)
                );
            }
        }
        return static_cast<int>(std::max(least, 0ms).count());
    }

    void endOverdue() {
        const Time present = now();
        for (const int id : m_table.overdue(present)) {
            if (m_table.phaseOf(id) == Phase::making) {
                m_connections.at(id).slot->send({503, {}, {{"Retry-After", "5"}}});
            } else {
                hangUp(id);
            }
        }
        m_farewells.closeOverdue(present);
        if (m_listenAgain && *m_listenAgain <= present) {
            m_listenAgain.reset();
            watch(m_listener.get(), EPOLLIN);
        }
    }

    // Connections

    void letIn() {
        for (int most = m_limits.connections; most > 0; --most) {
            sockaddr_storage address{};
            socklen_t size = sizeof address;
            FileDescriptor socket(accept4(
                m_listener.get(), reinterpret_cast<sockaddr*>(&address), &size,
                SOCK_NONBLOCK | SOCK_CLOEXEC
            ));
            if (!socket.isOpen()) {
                if (errno == EMFILE || errno == ENFILE || errno == ENOBUFS || errno == ENOMEM) {
                    epoll_ctl(m_epoll.get(), EPOLL_CTL_DEL, m_listener.get(), nullptr);
                    m_listenAgain = now() + kBreath;
                }
                return;
            }
            letIn(std::move(socket), address);
        }
    }

    void letIn(FileDescriptor socket, const sockaddr_storage& address) {
        const int yes = 1;
        setsockopt(socket.get(), IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        const int id = socket.get();
        watch(id, EPOLLIN | EPOLLRDHUP | EPOLLET);
        const auto admission = m_table.enter(id, clientAt(address), now());
        if (admission.displaced) {
            ++m_displaced;
            hangUp(*admission.displaced);
        }
        if (!admission.isLetIn) {
            ++m_refused;
            send(id, kFull.data(), kFull.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
            m_farewells.add(std::move(socket), now());
            return;
        }
        FileDescriptor librarys(fcntl(id, F_DUPFD_CLOEXEC, 0));
        m_connections[id].socket = std::move(socket);
        m_open = m_connections.size();
        if (!librarys.isOpen() || !m_library->begin(id, std::move(librarys), address)) {
            ended(id);
        }
    }

    void hangUp(int id) {
        Connection& connection = m_connections.at(id);
        if (m_table.phaseOf(id) == Phase::sending) {
            // Otherwise the system would go on trying to send the rest.
            const linger hard{1, 0};
            setsockopt(connection.socket.get(), SOL_SOCKET, SO_LINGER, &hard, sizeof hard);
        }
        m_table.leave(id);
        connection.isHungUp = true;
        shutdown(connection.socket.get(), SHUT_RDWR);
        if (connection.slot) {
            connection.slot->abandon();
        }
        m_library->drop(id);
    }

    void noteInput(int id, bool isGone) {
        m_table.noteInput(id, now());
        if (isGone && m_table.phaseOf(id) == Phase::making) {
            hangUp(id); // the library would not notice before there is an answer
        }
    }

    void watch(int descriptor, std::uint32_t events) const {
        epoll_event event{};
        event.events = events;
        event.data.fd = descriptor;
        epoll_ctl(m_epoll.get(), EPOLL_CTL_ADD, descriptor, &event);
    }

    // Conversations

    std::optional<HttpAnswer> asked(int id, HttpRequest request) override {
        ++m_requests;
        Connection& connection = m_connections.at(id);
        ++connection.requests;
        m_table.set(id, Phase::making, now());
        connection.slot =
            std::make_shared<HttpReply::Slot>([mailbox = m_mailbox, id] { mailbox->post(id); });
        m_handler(request, HttpReply(connection.slot));
        return takeAnswer(id);
    }

    /// The answer, if it is there.
    std::optional<HttpAnswer> takeAnswer(int id) {
        auto answer = m_connections.at(id).slot->takeOrWait();
        if (answer) {
            m_table.set(id, Phase::sending, now());
        }
        return answer;
    }

    void deliver(int id) {
        // The connection may be gone and another one have its number.
        const auto found = m_connections.find(id);
        if (found == m_connections.end() || !found->second.slot ||
            m_table.phaseOf(id) != Phase::making) {
            return;
        }
        if (auto answer = takeAnswer(id)) {
            m_library->answer(id, std::move(*answer));
        }
    }

    bool isLast(int id) override {
        return m_connections.at(id).requests >= m_limits.requestsPerConnection;
    }

    void answered(int id) override { m_table.set(id, Phase::waiting, now()); }

    void ended(int id) override {
        const auto found = m_connections.find(id);
        if (found == m_connections.end()) {
            return;
        }
        if (found->second.slot) {
            found->second.slot->abandon();
        }
        m_table.leave(id);
        if (!found->second.isHungUp) {
            m_farewells.add(std::move(found->second.socket), now());
        }
        m_connections.erase(found);
        m_open = m_connections.size();
    }

    HttpHandler m_handler;
    Limits m_limits;
    int m_port = 0;
    std::atomic<std::uint64_t> m_requests = 0;
    std::atomic<std::uint64_t> m_refused = 0;
    std::atomic<std::uint64_t> m_displaced = 0;
    std::atomic<std::uint64_t> m_open = 0;
    std::atomic<bool> m_isStopping = false;
    /// Shared with the replies, which may outlive the server.
    std::shared_ptr<Mailbox> m_mailbox = std::make_shared<Mailbox>();
    FileDescriptor m_epoll{epoll_create1(EPOLL_CLOEXEC)};
    FileDescriptor m_listener;
    std::optional<Time> m_listenAgain;
    ConnectionTable m_table;
    Farewells m_farewells;
    std::map<int, Connection> m_connections;
    std::unique_ptr<HttpConversations> m_library;
    std::thread m_thread; ///< uses all of the above once it runs
};

WebServer::WebServer(HttpHandler handler, const Limits& limits)
    : m_impl(std::make_unique<Impl>(std::move(handler), limits)) {}

WebServer::~WebServer() = default;

bool WebServer::start(const std::string& address, int port) {
    return m_impl->begin(address, port);
}

int WebServer::port() const {
    return m_impl->port();
}

void WebServer::stop() {
    m_impl->end();
}

WebServer::Counts WebServer::counts() const {
    return m_impl->counts();
}

} // namespace raincast
