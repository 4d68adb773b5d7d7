// SPDX-License-Identifier: MIT
#include "position/source/tcp_source.h"

#include <QTcpSocket>

#include <utility>

namespace raincast {

namespace {

constexpr qint64 kBufferSize = 64 * 1024;

} // namespace

TcpSource::TcpSource(Timers& timers, QString host, std::uint16_t port, QByteArray greeting)
    : m_host(std::move(host)), m_port(port), m_greeting(std::move(greeting)),
      m_ready(timers, [this] { service(); }) {}

TcpSource::~TcpSource() {
    close();
}

void TcpSource::open(Sink& sink) {
    m_sink = &sink;
    m_failure.clear();
    m_socket = std::make_unique<QTcpSocket>();
    // A server that sends faster than we read waits; nothing piles up here.
    m_socket->setReadBufferSize(kBufferSize);
    QObject::connect(m_socket.get(), &QTcpSocket::connected, [this] {
        // A peer that vanished without a word is found out.
        m_socket->setSocketOption(QAbstractSocket::KeepAliveOption, 1);
        m_socket->write(m_greeting);
    });
    QObject::connect(m_socket.get(), &QTcpSocket::readyRead, [this] { m_ready.call(); });
    QObject::connect(m_socket.get(), &QTcpSocket::errorOccurred, [this] {
        m_failure = m_socket->errorString();
        m_ready.call();
    });
    m_socket->connectToHost(m_host, m_port, QIODevice::ReadWrite);
}

void TcpSource::close() {
    m_ready.cancel();
    m_sink = nullptr;
    if (m_socket) {
        // Kept until the next opening: it may be the one that calls us.
        m_socket->disconnect();
        m_socket->abort();
    }
}

void TcpSource::service() {
    readAll();
    if (m_sink != nullptr && !m_failure.isEmpty()) {
        Sink* sink = m_sink;
        close();
        sink->broken(QStringLiteral("%1:%2: %3").arg(m_host).arg(m_port).arg(m_failure));
    }
}

void TcpSource::readAll() {
    char bytes[4096];
    while (m_sink != nullptr) {
        const qint64 count = m_socket->read(bytes, sizeof bytes);
        if (count <= 0) {
            return;
        }
        m_sink->received({bytes, static_cast<std::size_t>(count)});
    }
}

} // namespace raincast
