// SPDX-License-Identifier: MIT
#pragma once

#include "core/idle_call.h"
#include "position/source/position_source.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>

class QTcpSocket;

namespace raincast {

/// A server that sends sentences, as it is or after a greeting that asks for them.
class TcpSource : public PositionSource {
public:
    TcpSource(Timers& timers, QString host, std::uint16_t port, QByteArray greeting = {});
    ~TcpSource() override;

    void open(Sink& sink) override;
    void close() override;

private:
    void service();
    void readAll();

    QString m_host;
    std::uint16_t m_port;
    QByteArray m_greeting;
    Sink* m_sink = nullptr;
    QString m_failure;
    std::unique_ptr<QTcpSocket> m_socket;
    IdleCall m_ready;
};

} // namespace raincast
