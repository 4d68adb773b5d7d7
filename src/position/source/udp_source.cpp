// SPDX-License-Identifier: MIT
#include "position/source/udp_source.h"

#include "core/text.h"

#include <QString>
#include <QUdpSocket>

namespace raincast {

UdpSource::UdpSource(Timers& timers, std::uint16_t port)
    : m_port(port), m_ready(timers, [this] { service(); }) {}

UdpSource::~UdpSource() {
    close();
}

void UdpSource::open(Sink& sink) {
    m_sink = &sink;
    m_socket = std::make_unique<QUdpSocket>();
    if (!m_socket->bind(m_port)) {
        const QString why = m_socket->errorString();
        close();
        sink.broken(Text::tr("UDP port %1: %2").arg(m_port).arg(why));
        return;
    }
    QObject::connect(m_socket.get(), &QUdpSocket::readyRead, [this] { m_ready.call(); });
}

void UdpSource::close() {
    m_ready.cancel();
    m_sink = nullptr;
    if (m_socket) {
        // Kept until the next opening: it may be the one that calls us.
        m_socket->disconnect();
        m_socket->abort();
    }
}

void UdpSource::service() {
    char bytes[65536];
    while (m_sink != nullptr && m_socket->hasPendingDatagrams()) {
        const qint64 count = m_socket->readDatagram(bytes, sizeof bytes - 1);
        if (count >= 0) {
            bytes[count] = '\n';
            m_sink->received({bytes, static_cast<std::size_t>(count) + 1});
        }
    }
}

} // namespace raincast
