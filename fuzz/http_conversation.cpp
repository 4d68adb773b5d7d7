// SPDX-License-Identifier: MIT
// Whatever a client sends to the server, piece by piece (each behind its length): request lines,
// headers, bodies. Conversations end when the client goes, no request is larger than it may be, and
// what comes back is HTTP.
#include "http/http_conversations.h"
#include "input.h"

#include <netinet/in.h>
#include <sys/socket.h>

namespace raincast {
namespace {

constexpr std::size_t kMostRequestBytes = 1024;
constexpr int kMostRequests = 3;
constexpr int kMostTurns = 1000;

class Answering : public HttpConversations::Events {
public:
    std::optional<HttpAnswer> asked(int /*id*/, HttpRequest request) override {
        require(!request.method.empty() && !request.path.empty());
        std::size_t bytes = request.path.size() + request.query.size();
        for (const auto& [name, value] : request.headers) {
            require(!name.empty() && name.find_first_of(" \t\r\n") == std::string::npos);
            require(value.find_first_of("\r\n") == std::string::npos);
            bytes += name.size() + value.size();
        }
        require(bytes <= kMostRequestBytes);
        ++m_asked;
        m_isOpen = request.query == "later";
        return m_isOpen ? std::nullopt : std::optional(answer());
    }
    bool isLast(int /*id*/) override { return m_asked >= kMostRequests; }
    void answered(int /*id*/) override {}
    void ended(int /*id*/) override { m_hasEnded = true; }

    [[nodiscard]] bool hasEnded() const { return m_hasEnded; }
    [[nodiscard]] bool takeOpen() { return std::exchange(m_isOpen, false); }
    [[nodiscard]] static HttpAnswer answer() {
        return {200, "body", {{"Content-Type", "text/plain"}}};
    }

private:
    int m_asked = 0;
    bool m_isOpen = false;
    bool m_hasEnded = false;
};

/// The other end of a conversation.
class Client {
public:
    explicit Client(FileDescriptor socket) : m_socket(std::move(socket)) {}

    void send(const QByteArray& bytes) const {
        ::send(m_socket.get(), bytes.data(), static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL);
    }
    void read() {
        char bytes[4096];
        for (ssize_t count = 1; count > 0;) {
            count = recv(m_socket.get(), bytes, sizeof bytes, MSG_DONTWAIT);
            m_answers.append(bytes, std::max<ssize_t>(count, 0));
        }
        const qsizetype known = std::min<qsizetype>(m_answers.size(), 9);
        require(m_answers.startsWith(QByteArray("HTTP/1.1 ").first(known)));
    }
    void leave() { m_socket.reset(); }

private:
    FileDescriptor m_socket;
    QByteArray m_answers;
};

void turn(HttpConversations& conversations, Answering& answering, Client& client) {
    conversations.run();
    if (answering.takeOpen()) {
        conversations.answer(1, Answering::answer());
        conversations.run();
    }
    client.read();
}

} // namespace
} // namespace raincast

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    int ends[2];
    require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends) == 0);
    Answering answering;
    HttpConversations conversations(answering, kMostRequestBytes);
    Client client{FileDescriptor(ends[1])};
    sockaddr_storage address{};
    address.ss_family = AF_INET;
    require(conversations.begin(1, FileDescriptor(ends[0]), address));
    Input input(data, size);
    while (!input.atEnd() && !answering.hasEnded()) {
        client.send(input.piece());
        turn(conversations, answering, client);
        turn(conversations, answering, client);
    }
    client.leave();
    for (int i = 0; i < kMostTurns && !answering.hasEnded(); ++i) {
        conversations.run();
        if (answering.takeOpen()) {
            conversations.answer(1, Answering::answer());
        }
    }
    require(answering.hasEnded());
    return 0;
}
