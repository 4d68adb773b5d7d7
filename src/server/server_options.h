// SPDX-License-Identifier: MIT
#pragma once

#include "core/command_line.h"
#include "core/replay_clock.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <tl/expected.hpp>
#include <variant>

namespace raincast {

/// Where the built-in HTTP server listens.
struct ListenAddress {
    QString address = QStringLiteral("127.0.0.1");
    std::uint16_t port = 8155; ///< 0: any free one

    friend bool operator==(const ListenAddress&, const ListenAddress&) = default;
};

/// Where the frames come from.
enum class SourceKind {
    sample, ///< made-up weather
    level3, ///< products that something else puts into a folder
    live,   ///< public providers
};

/// How live weather is fetched. Addresses have no slash at their end; an empty one turns a provider
/// off, none stands for the usual one.
struct LiveOptions {
    std::optional<QString> frames;
    std::optional<QString> fallback;
    std::optional<QString> warnings;
    QString contact;                ///< told to the providers; may be empty
    std::optional<Replay> replay{}; ///< of the past; nothing: weather of now
};

/// The options of raincast-server when it serves or publishes.
struct ServeOptions {
    std::optional<ListenAddress> listen = ListenAddress(); ///< nothing: it only publishes
    SourceKind source = SourceKind::sample;
    QString level3Folder;     ///< of level3 only
    LiveOptions live;         ///< of live only
    int hours = 4;            ///< how long frames are kept; 0: for good
    QString publishFolder;    ///< empty: it does not publish
    QStringList publishSites; ///< empty: all
    int publishDetail = 1;    ///< 2 or 4: sharp pictures, too
    bool once = false;        ///< publishes once and ends
    QString roadsFile;
    QString cacheFolder; ///< empty: the usual one
    bool endWithParent = false;
    bool quiet = false;
};

/// raincast-server render FILE OUT.gif
struct RenderOptions {
    QString file;
    QString outFile;
    int detail = 1; ///< 2 or 4: of a sharp picture
};

using ServerOptions = std::variant<ServeOptions, RenderOptions>;

/// Reads the command line, the program's name first.
[[nodiscard]] tl::expected<ServerOptions, CommandLineAnswer>
readServerOptions(const QStringList& arguments);

/// "127.0.0.1:8155", "[::1]:0", "radar.home:80"; nothing for any other text.
[[nodiscard]] std::optional<ListenAddress> readListenAddress(const QString& text);

} // namespace raincast
