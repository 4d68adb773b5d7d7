// SPDX-License-Identifier: MIT
// What a navigator, or whatever listens in its place, sends over its socket: an answer counts if it
// is four bytes that were asked for, and everything else ends the connection.
#include "position/navigator/navigator_socket.h"

#include "input.h"

#include <QFile>
#include <QTemporaryDir>

#include <sys/socket.h>
#include <sys/un.h>

#include <deque>
#include <thread>

namespace raincast {
namespace {

constexpr qsizetype kMessageBytes = 12;
constexpr qsizetype kAnswerBytes = 4;
constexpr NavigatorPort::Message kMessage{0x0400, 16, 31};

/// Listens at a path, and answers each message with the next piece; ends the connection after one
/// that is too short, and when there are none left.
class Peer {
public:
    explicit Peer(const QByteArray& path) : m_listener(socket(AF_UNIX, SOCK_STREAM, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::copy(path.begin(), path.end(), address.sun_path);
        const auto* const any = reinterpret_cast<const sockaddr*>(&address);
        require(bind(m_listener.get(), any, sizeof address) == 0);
        require(listen(m_listener.get(), 1) == 0);
    }

    [[nodiscard]] std::thread serve(std::deque<QByteArray> pieces) const {
        return std::thread([listener = m_listener.get(), pieces = std::move(pieces)]() mutable {
            const FileDescriptor connection(accept(listener, nullptr, nullptr));
            char message[kMessageBytes];
            while (recv(connection.get(), message, sizeof message, MSG_WAITALL) == kMessageBytes) {
                const QByteArray piece = pieces.empty() ? QByteArray() : pieces.front();
                send(connection.get(), piece.data(), piece.size(), MSG_NOSIGNAL);
                if (piece.size() < kAnswerBytes) {
                    return;
                }
                pieces.pop_front();
            }
        });
    }

private:
    FileDescriptor m_listener;
};

} // namespace
} // namespace raincast

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    static const QTemporaryDir folder;
    static const QByteArray path = QFile::encodeName(folder.filePath(QStringLiteral("socket")));
    static const Peer peer(path);
    Input input(data, size);
    std::deque<QByteArray> pieces;
    while (!input.atEnd()) {
        pieces.push_back(input.piece());
    }
    std::thread serving = peer.serve(pieces);
    const auto socket = NavigatorSocket::connect(path, std::chrono::seconds(5));
    require(socket != nullptr);
    bool isWhole = true;
    for (std::size_t i = 0; i <= pieces.size(); ++i) {
        const auto answer = socket->send(kMessage);
        const bool isAnswered = isWhole && i < pieces.size() && pieces[i].size() >= kAnswerBytes;
        require(answer.has_value() == isAnswered);
        isWhole = isAnswered && pieces[i].size() == kAnswerBytes;
    }
    require(!socket->exists());
    serving.join();
    return 0;
}
