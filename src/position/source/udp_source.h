// SPDX-License-Identifier: MIT
#pragma once

#include "core/idle_call.h"
#include "position/source/position_source.h"

#include <cstdint>
#include <memory>

class QUdpSocket;

namespace raincast {

/// Datagrams that anyone sends to a port of this computer. The end of a datagram ends its last
/// sentence: some senders leave line ends out.
class UdpSource : public PositionSource {
public:
    UdpSource(Timers& timers, std::uint16_t port);
    ~UdpSource() override;

    void open(Sink& sink) override;
    void close() override;

private:
    void service();

    std::uint16_t m_port;
    Sink* m_sink = nullptr;
    std::unique_ptr<QUdpSocket> m_socket;
    IdleCall m_ready;
};

} // namespace raincast
