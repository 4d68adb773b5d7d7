// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace raincast {

/// The default address of raincast-server: pictures come from there until the user names another
/// server.
inline constexpr char16_t kLocalServer[] = u"127.0.0.1:8155";

/// Whether a text names a server: HOST or HOST:PORT, the host a name, an IPv4 address or an IPv6
/// address in brackets, the port 1 to 65535.
[[nodiscard]] bool isServer(const QString& text);

/// The servers that pictures come from, each HOST or HOST:PORT.
struct RadarServers {
    QString radar;   ///< frames, warnings, world files, topo, rivers and highways
    QString basemap; ///< counties and cities
};

} // namespace raincast
