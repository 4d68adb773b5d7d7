// SPDX-License-Identifier: MIT
#include "navigator_sim/navigator.h"

#include <QCoreApplication>
#include <QDataStream>
#include <QDateTime>
#include <QFile>
#include <QLocalSocket>
#include <QStringList>

#include <csignal>
#include <utility>

namespace navigator_sim {

namespace {

constexpr std::uint32_t kClose = 16;
constexpr std::uint32_t kUserMessage = 0x0400;
constexpr std::uint32_t kGetPosition = 31;
constexpr std::uint32_t kSetPosition = 32;
constexpr std::uint32_t kGetPositionNewer = 0x8004;
constexpr std::uint32_t kSuccess = 0;
constexpr std::uint32_t kFileFailed = 8;
constexpr std::uint32_t kUnknownRequest = 11;
constexpr int kMessageSize = 12;
constexpr int kRecordSize = 64;

QDataStream& littleEndian(QDataStream& stream) {
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.setFloatingPointPrecision(QDataStream::DoublePrecision);
    return stream;
}

} // namespace

Navigator::Navigator(Route route, QString file, Say say)
    : m_route(std::move(route)), m_file(std::move(file)), m_say(std::move(say)),
      m_fileSize(kRecordSize) {}

bool Navigator::open(const QString& folder) {
    const QString path = folder + QStringLiteral("/WCE_QVTrekkoMainWnd");
    QLocalServer::removeServer(path); // of one that crashed
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(&m_server, &QLocalServer::newConnection, &m_server, [this] {
        while (QLocalSocket* const client = m_server.nextPendingConnection()) {
            QObject::connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
            QObject::connect(client, &QLocalSocket::readyRead, client, [this, client] {
                take(*client);
            });
            take(*client);
        }
    });
    return !folder.isEmpty() && m_server.listen(path);
}

void Navigator::take(QLocalSocket& client) {
    while (client.bytesAvailable() >= kMessageSize) {
        QDataStream bytes(client.read(kMessageSize));
        std::uint32_t message = 0;
        std::uint32_t first = 0;
        std::uint32_t second = 0;
        littleEndian(bytes) >> message >> first >> second;
        handle(client, message, second);
    }
}

void Navigator::handle(QLocalSocket& client, std::uint32_t message, std::uint32_t request) {
    if (message == kClose) {
        m_say(QStringLiteral("close"));
        QCoreApplication::quit();
    }
    if (message != kUserMessage) {
        return;
    }
    m_say(QStringLiteral("request %1").arg(request));
    if (m_dies) {
        std::raise(SIGKILL);
    }
    if (m_hangs) {
        return;
    }
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    littleEndian(stream) << answer(request);
    client.write(bytes);
    client.flush();
}

std::uint32_t Navigator::answer(std::uint32_t request) {
    const auto told = m_answers.find(request);
    if (told != m_answers.end() && told->second != kSuccess) {
        return told->second;
    }
    switch (request) {
    case kGetPosition:
    case kGetPositionNewer:
        return writePosition();
    case kSetPosition:
        readPosition();
        return kSuccess;
    default:
        return kUnknownRequest;
    }
}

std::uint32_t Navigator::writePosition() {
    m_route.advance();
    const Place place = m_route.place();
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    littleEndian(stream) << place.latitude << place.longitude << m_route.courseDegrees()
                         << m_route.speedKnots() << 74.0
                         << static_cast<std::uint32_t>(QDateTime::currentSecsSinceEpoch())
                         << std::uint32_t{1} << 0.0 << 0.0;
    QFile file(m_file);
    const bool written = file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
                         file.write(bytes.left(m_fileSize)) >= 0 && file.flush();
    return written ? kSuccess : kFileFailed;
}

void Navigator::readPosition() {
    QFile file(m_file);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.read(kRecordSize) : QByteArray();
    if (bytes.size() < kRecordSize) {
        m_say(QStringLiteral("told nothing"));
        return;
    }
    QDataStream stream(bytes);
    littleEndian(stream);
    QStringList words{QStringLiteral("told")};
    const auto take = [&stream, &words](auto number, int count) {
        for (int i = 0; i < count; ++i) {
            stream >> number;
            words.append(QString::number(number));
        }
    };
    take(double{}, 5);
    take(std::uint32_t{}, 2);
    take(double{}, 2);
    m_say(words.join(u' '));
}

bool Navigator::command(const QString& line) {
    const QStringList words = line.split(u' ', Qt::SkipEmptyParts);
    bool first = false;
    bool second = false;
    const std::uint32_t number = words.value(1).toUInt(&first);
    const std::uint32_t status = words.value(2).toUInt(&second);
    if (words.value(0) == u"answer" && first && second) {
        m_answers[number] = status;
    } else if (words.value(0) == u"short" && first) {
        m_fileSize = static_cast<int>(number);
    } else if (line == u"hang") {
        m_hangs = true;
    } else if (line == u"die") {
        m_dies = true;
    } else {
        return false;
    }
    return true;
}

} // namespace navigator_sim
