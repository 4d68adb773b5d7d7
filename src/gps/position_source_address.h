// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace raincast {

/// Which source of positions is meant, as the user writes it:
///
///     serial:PATH[@SPEED]     a serial device, 4800 baud unless told otherwise
///     tcp:HOST:PORT           a server that sends sentences
///     udp:PORT                datagrams that are sent to this port
///     gpsd:[HOST[:PORT]]      a gpsd, at port 2947 of this computer unless told otherwise
///     file:PATH[?rate=N]      a recorded file at its own pace, N times as fast, or (0) at once
///
/// An IPv6 address as HOST stands in brackets.
struct PositionSourceAddress {
    enum class Kind { Serial, Tcp, Udp, Gpsd, File };

    static constexpr int kDefaultBaud = 4800;
    static constexpr std::uint16_t kGpsdPort = 2947;
    static constexpr double kMaxRate = 1000;

    Kind kind = Kind::Serial;
    QString path;           ///< Serial, File
    int baud = 0;           ///< Serial
    QString host;           ///< Tcp, Gpsd
    std::uint16_t port = 0; ///< Tcp, Udp, Gpsd
    double rate = 0;        ///< File: 0 to kMaxRate

    /// Reads an address. Empty when it makes no sense: then `error`, if given, says what is wrong
    /// with which part of the text.
    [[nodiscard]] static std::optional<PositionSourceAddress>
    parse(const QString& text, QString* error = nullptr);

    friend bool operator==(const PositionSourceAddress&, const PositionSourceAddress&) = default;
};

} // namespace raincast
