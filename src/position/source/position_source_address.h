// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>
#include <optional>
#include <tl/expected.hpp>

namespace raincast {

/// The address of a source of positions, as the user writes it:
///
///     serial:PATH[@SPEED]     a serial device, at 4800 baud without SPEED
///     tcp:HOST:PORT           a server that sends sentences
///     udp:PORT                datagrams to this port
///     gpsd:[HOST[:PORT]]      a gpsd; by default at port 2947 of this computer
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

    /// The beginning of a kind's addresses, such as "serial:".
    [[nodiscard]] static QLatin1String scheme(Kind kind);
    /// The kind that the beginning of a text names, whatever follows. Empty for any other text.
    [[nodiscard]] static std::optional<Kind> kindOf(QStringView text);

    /// Reads an address, or says that the text is not one, with its mistake().
    [[nodiscard]] static tl::expected<PositionSourceAddress, QString> parse(const QString& text);

    /// What is wrong with a part of a text, such as "the port is missing"; empty for an address.
    /// Long parts are cut.
    [[nodiscard]] static std::optional<QString> mistake(QStringView text);

    friend bool operator==(const PositionSourceAddress&, const PositionSourceAddress&) = default;
};

} // namespace raincast
