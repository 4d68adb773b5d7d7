// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <memory>

class QLocalServer;
class QLocalSocket;

namespace raincast {

/// Keeps a user from opening the same page file twice, which would lose the changes of one of the
/// two viewers: the first one listens on a local socket of that user and file; a second one
/// connects to it, asks it to come to the front and ends.
class SingleInstance {
public:
    /// How long an instance waits for its turn when several start at the same moment.
    static constexpr int kTurnMilliseconds = 5000;

    /// For a page file, which need not exist.
    explicit SingleInstance(const QString& pageFile, int turnMilliseconds = kTurnMilliseconds);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /// Whether this is the first instance. If so it listens from now on, also where a crashed
    /// instance left its socket; a folder in which no socket can be made does not matter. If not,
    /// it has asked the first one to come to the front and given it `token`, with which the desktop
    /// lets it do so. Waits for no answer. Call it once.
    [[nodiscard]] bool claim(const QByteArray& token = {});

    /// Sets what to do when another instance asks: called in the event loop with its token, but not
    /// while the program is busy. A token of more than 1 KiB is ignored.
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
