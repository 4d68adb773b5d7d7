// SPDX-License-Identifier: MIT
// What any program of this user sends to the socket by which a second viewer asks the first one to
// the front: pieces, each behind its length. The window comes to the front once, with a token that
// is no longer than a token may be.
#include "app/single_instance.h"

#include "core/file_descriptor.h"
#include "input.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <sys/socket.h>
#include <sys/un.h>

namespace raincast {
namespace {

constexpr qsizetype kLongestToken = 1024;
constexpr int kPatience = 500; // turns of at most 10 ms

/// The viewer that was there first.
class First {
public:
    First() : m_instance(m_folder.filePath(QStringLiteral("pages.cfg"))) {
        require(m_instance.claim());
        m_instance.onFront([this](const QByteArray& token) { m_tokens.push_back(token); });
    }

    [[nodiscard]] QByteArray path() const { return m_instance.socketPath().toUtf8(); }

    QList<QByteArray> takeTokens() { return std::exchange(m_tokens, {}); }

private:
    QTemporaryDir m_folder;
    SingleInstance m_instance;
    QList<QByteArray> m_tokens;
};

FileDescriptor connectTo(const QByteArray& path) {
    FileDescriptor connection(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::copy(path.begin(), path.end(), address.sun_path);
    const auto* const any = reinterpret_cast<const sockaddr*>(&address);
    require(connect(connection.get(), any, sizeof address) == 0);
    return connection;
}

} // namespace
} // namespace raincast

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    static int count = 1;
    static char name[] = "viewer";
    static char* arguments[] = {name, nullptr};
    static const QCoreApplication application(count, arguments);
    static First first;

    Input input(data, size);
    QByteArray sent;
    FileDescriptor connection = connectTo(first.path());
    while (!input.atEnd()) {
        const QByteArray piece = input.piece();
        sent += piece;
        send(connection.get(), piece.data(), static_cast<std::size_t>(piece.size()), MSG_NOSIGNAL);
        QCoreApplication::processEvents();
    }
    connection.reset();
    QList<QByteArray> tokens;
    for (int turn = 0; tokens.isEmpty() && turn < kPatience; ++turn) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 10);
        tokens = first.takeTokens();
    }
    require(tokens.size() == 1);
    require(tokens.front() == (sent.size() <= kLongestToken ? sent : QByteArray()));
    return 0;
}
