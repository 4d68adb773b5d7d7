// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

namespace raincast {

/// What the command line asks of one run of the viewer; nothing of it is ever saved.
struct AppOptions {
    QString pageFile;      ///< the absolute path of the page file; empty: the one of the settings
    QSize geometry;        ///< the main window's size in logical pixels; empty: as it was left
    QString screenshot;    ///< the picture's absolute path; empty: a run for a person
    QString nmea;          ///< the source of positions; empty: the one of the settings
    QString radarServer;   ///< HOST or HOST:PORT; empty: the one of the settings
    QString basemapServer; ///< the same
    QString siteId;        ///< of the first radar item; empty: its own
    /// Index into the product table, with a site only; none: the item's own.
    std::optional<int> product;
    QString welcomeSiteId; ///< of the first radar item while it has none; empty: it asks
    /// Qt's own options, to be given to the application object.
    QStringList qtArguments;
};

/// A command line that starts nothing: a text to print, and whether it is a complaint.
struct AppAnswer {
    QString text;
    bool wrong = false;
};

/// Reads a command line, the program's name first. Needs no application object, and none may exist
/// yet: Qt would take some of our options for its own.
[[nodiscard]] std::variant<AppOptions, AppAnswer> readAppOptions(const QStringList& arguments);

} // namespace raincast
