// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>

class QLocalServer;
class QLocalSocket;

namespace raincast {

/// Keeps a user from having the same page file open twice, which would lose what one of the two
/// viewers saves: the first one listens on a local socket of that user and file, a second one
/// connects to it, asks it to come to the front and ends.
class SingleInstance {
public:
    /// How long one of several that start at the same moment waits for its turn.
    static constexpr int kTurnMilliseconds = 5000;

    /// For a page file, which need not exist.
    explicit SingleInstance(const QString& pageFile, int turnMilliseconds = kTurnMilliseconds);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// Whether this is the first instance. If so it listens from now on; a socket that a crashed
    /// instance left is no obstacle, and neither is a folder in which none can be made. If not, the
    /// first one has been asked to come to the front and is given `token`, with which the desktop
    /// lets it do so. No answer is awaited. To be called once.
    [[nodiscard]] bool claim(const QByteArray& token = {});

    /// What to do when another instance asks, called in the event loop with its token, but not
    /// while the program is busy. A token of more than 1 KiB counts as none.
    void onFront(std::function<void(const QByteArray& token)> front);

    /// The path of the socket.
    [[nodiscard]] const QString& socketPath() const { return m_path; }

private:
    [[nodiscard]] bool askFirst(const QByteArray& token) const;
    void listen();
    void take(QLocalSocket& asking);
    void comeToFront(const QByteArray& token);

    QString m_path;
    int m_turnMilliseconds;
    std::unique_ptr<QLocalServer> m_server;
    std::function<void(const QByteArray&)> m_front;
};

} // namespace raincast
