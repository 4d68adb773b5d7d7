// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_descriptor.h"
#include "position/navigator/navigator_port.h"

#include <QByteArray>

#include <array>

namespace raincast {

/// A window of another program as a connection to its local socket: it exists for as long as the
/// other end keeps the connection open. A message is 12 bytes, the answer to one that was sent 4
/// (docs/formats/navigator.md). Whatever else comes, or does not come in time, ends the connection.
class NavigatorSocket : public NavigatorPort::Window {
public:
    /// Null when no program of this user listens there. Never waits.
    [[nodiscard]] static std::unique_ptr<NavigatorSocket>
    connect(const QByteArray& path, std::chrono::milliseconds answerLimit);

    [[nodiscard]] bool exists() override;
    [[nodiscard]] std::optional<std::uint32_t> send(const NavigatorPort::Message& message) override;
    void post(const NavigatorPort::Message& message) override;

private:
    using Answer = std::array<std::uint8_t, 4>;

    NavigatorSocket(FileDescriptor socket, std::chrono::milliseconds answerLimit)
        : m_socket(std::move(socket)), m_answerLimit(answerLimit) {}
    [[nodiscard]] bool write(const NavigatorPort::Message& message);
    [[nodiscard]] bool read(Answer& answer);
    [[nodiscard]] bool awaitBytes();

    FileDescriptor m_socket;
    std::chrono::milliseconds m_answerLimit;
};

} // namespace raincast
