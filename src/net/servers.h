// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace raincast {

/// The default address of raincast-server.
inline constexpr char16_t kLocalServer[] = u"127.0.0.1:8155";

/// Whether a text names a server: HOST or HOST:PORT, the host a name, an IPv4 address or an IPv6
/// address in brackets, the port 1 to 65535.
[[nodiscard]] bool isServer(const QString& text);

/// These stand for the servers that the viewer starts itself, wherever they listen; what connects
/// knows the address. No text that names a server is one of them.
inline constexpr char16_t kOwnLiveServer[] = u"Raincast's live radar server";
inline constexpr char16_t kOwnSampleServer[] = u"Raincast's sample weather server";
inline constexpr char16_t kOwnReplayServer[] = u"Raincast's replay of "; ///< and of when

/// The servers that pictures come from, each HOST or HOST:PORT, or one of the viewer's own.
struct RadarServers {
    QString radar;   ///< frames, warnings, world files, topo, rivers and highways
    QString basemap; ///< counties and cities

    friend bool operator==(const RadarServers&, const RadarServers&) = default;
};

} // namespace raincast
