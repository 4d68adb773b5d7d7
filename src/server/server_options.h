// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <variant>

namespace raincast {

/// Where the built-in HTTP server listens.
struct ListenAddress {
    QString address = QStringLiteral("127.0.0.1");
    std::uint16_t port = 8155; ///< 0: any free one

    friend bool operator==(const ListenAddress&, const ListenAddress&) = default;
};

/// What raincast-server is asked to serve, and how.
struct ServeOptions {
    std::optional<ListenAddress> listen = ListenAddress(); ///< none: it only publishes
    QString level3Folder;                                  ///< empty: sample weather
    int hours = 4;            ///< how long frames are kept; 0: for good
    QString publishFolder;    ///< empty: it does not publish
    QStringList publishSites; ///< empty: all
    bool once = false;        ///< publishes once and ends
    QString roadsFile;
    QString mapDataFolder; ///< empty: the usual places
    QString cacheFolder;   ///< empty: the one that is chosen by default
    bool endWithParent = false;
    bool quiet = false;
};

/// raincast-server render FILE OUT.gif
struct RenderOptions {
    QString file;
    QString outFile;
};

/// Something to print instead: the help, the version, or what is wrong with the usage.
struct ServerAnswer {
    QString text;
    bool wrongUsage;
};

/// Reads the command line, the program's name first.
[[nodiscard]] std::variant<ServeOptions, RenderOptions, ServerAnswer>
readServerOptions(const QStringList& arguments);

/// "127.0.0.1:8155", "[::1]:0", "radar.home:80"; nothing for any other text.
[[nodiscard]] std::optional<ListenAddress> readListenAddress(const QString& text);

} // namespace raincast
