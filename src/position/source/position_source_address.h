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
    enum class Kind { serial, tcp, udp, gpsd, file };

    static constexpr int kDefaultBaud = 4800;
    static constexpr std::uint16_t kGpsdPort = 2947;
    static constexpr double kMaxRate = 1000;

    Kind kind = Kind::serial;
    QString path;           ///< Serial, File
    int baud = 0;           ///< Serial
    QString host;           ///< Tcp, Gpsd
    std::uint16_t port = 0; ///< Tcp, Udp, Gpsd
    double rate = 0;        ///< File: 0 to kMaxRate

    /// What an address of a kind begins with, as "serial:".
    [[nodiscard]] static QLatin1String scheme(Kind kind);
    /// The kind that the beginning of a text names, whatever follows. Empty if it names none.
    [[nodiscard]] static std::optional<Kind> kindOf(QStringView text);

    /// Reads an address. Empty when it makes no sense: then `error`, if given, says so, with the
    /// text and its mistake().
    [[nodiscard]] static std::optional<PositionSourceAddress>
    parse(const QString& text, QString* error = nullptr);

    /// What is wrong with which part of a text, as "the port is missing"; empty for an address.
    /// Long parts are cut.
    [[nodiscard]] static QString mistake(QStringView text);

    friend bool operator==(const PositionSourceAddress&, const PositionSourceAddress&) = default;
};

} // namespace raincast
