// SPDX-License-Identifier: MIT
#include "position/source/position_source.h"

#include "position/source/file_source.h"
#include "position/source/position_source_address.h"
#include "position/source/serial_source.h"
#include "position/source/tcp_source.h"
#include "position/source/udp_source.h"

namespace raincast {

namespace {

// Asks gpsd for the sentences of its receivers; for those that speak another language it makes some
// up.
constexpr char kGpsdWatch[] = "?WATCH={\"enable\":true,\"nmea\":true};\n";

} // namespace

std::unique_ptr<PositionSource>
makePositionSource(const PositionSourceAddress& address, Timers& timers) {
    using Kind = PositionSourceAddress::Kind;
    switch (address.kind) {
    case Kind::serial:
        return std::make_unique<SerialSource>(timers, address.path, address.baud);
    case Kind::tcp:
        return std::make_unique<TcpSource>(timers, address.host, address.port);
    case Kind::udp:
        return std::make_unique<UdpSource>(timers, address.port);
    case Kind::gpsd:
        return std::make_unique<TcpSource>(timers, address.host, address.port, kGpsdWatch);
    case Kind::file:
        return std::make_unique<FileSource>(timers, address.path, address.rate);
    }
    return nullptr;
}

} // namespace raincast
