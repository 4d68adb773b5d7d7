// SPDX-License-Identifier: MIT
#include "app/single_instance.h"

#include "app/globals.h"
#include "core/busy_guard.h"

#include <QCryptographicHash>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QStandardPaths>
#include <QTimer>

#include <filesystem>
#include <utility>

namespace raincast {

namespace {

constexpr int kConnectMilliseconds = 1000;
constexpr int kBusyMilliseconds = 100;
// Tokens are short; nothing longer is read.
constexpr qint64 kLongestToken = 1024;

/// The same for every way to write the path of a file, whether or not it exists.
QString unambiguous(const QString& path) {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path resolved = fs::weakly_canonical(path.toStdString(), error);
    return error ? path : QString::fromStdString(resolved.string());
}

QString socketFor(const QString& pageFile) {
    // The path of a socket is limited to about 100 bytes: use a digest.
    QCryptographicHash digest(QCryptographicHash::Sha256);
    digest.addData(CGlobals::windowClass().toUtf8() + '\0');
    digest.addData(CGlobals::title().toUtf8() + '\0');
    digest.addData(unambiguous(pageFile).toUtf8());
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
           QStringLiteral("/raincast-") + QString::fromLatin1(digest.result().toHex().left(20));
}

} // namespace

SingleInstance::SingleInstance(const QString& pageFile, int turnMilliseconds)
    : m_path(socketFor(pageFile)), m_turnMilliseconds(turnMilliseconds) {}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::claim(const QByteArray& token) {
    if (askFirst(token)) {
        return false;
    }
    // Of several that start at the same moment one at a time gets here; the others find it then.
    QLockFile lock(m_path + QStringLiteral(".lock"));
    const bool locked = lock.tryLock(m_turnMilliseconds);
    if (askFirst(token)) {
        return false;
    }
    if (locked) {
        listen();
    }
    return true;
}

bool SingleInstance::askFirst(const QByteArray& token) const {
    QLocalSocket first;
    first.connectToServer(m_path);
    if (!first.waitForConnected(kConnectMilliseconds)) {
        return false;
    }
    first.write(token.left(kLongestToken));
    first.waitForBytesWritten(kConnectMilliseconds);
    first.disconnectFromServer();
    return true;
}

void SingleInstance::listen() {
    // Nobody answered: an instance that crashed left the socket.
    QLocalServer::removeServer(m_path);
    m_server = std::make_unique<QLocalServer>();
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(m_server.get(), &QLocalServer::newConnection, m_server.get(), [this] {
        while (QLocalSocket* const asking = m_server->nextPendingConnection()) {
            take(*asking);
        }
    });
    m_server->listen(m_path);
}

void SingleInstance::take(QLocalSocket& asking) {
    asking.setReadBufferSize(2 * kLongestToken);
    QObject::connect(&asking, &QLocalSocket::readyRead, m_server.get(), [&asking] {
        if (asking.bytesAvailable() > kLongestToken) {
            asking.abort();
        }
    });
    QObject::connect(&asking, &QLocalSocket::disconnected, m_server.get(), [this, &asking] {
        const QByteArray token = asking.read(kLongestToken);
        asking.deleteLater();
        comeToFront(token);
    });
}

void SingleInstance::comeToFront(const QByteArray& token) {
    if (BusyGuard::active()) {
        QTimer::singleShot(kBusyMilliseconds, m_server.get(), [this, token] {
            comeToFront(token);
        });
    } else if (m_front) {
        m_front(token);
    }
}

void SingleInstance::onFront(std::function<void(const QByteArray&)> front) {
    m_front = std::move(front);
}

} // namespace raincast
