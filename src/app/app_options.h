// SPDX-License-Identifier: MIT
#pragma once

#include "core/command_line.h"

#include <QSize>
#include <QString>
#include <QStringList>

#include <optional>
#include <tl/expected.hpp>

namespace raincast {

/// What the command line asks of one run of the viewer. None of it is saved.
struct AppOptions {
    QString pageFile;      ///< the absolute path of the page file; empty: the one of the settings
    QSize geometry;        ///< the main window's size in logical pixels; empty: as it was left
    QString screenshot;    ///< the picture's absolute path; empty: none is made
    QString loop;          ///< the loop's; with neither it is a run for a person
    QString nmea;          ///< the source of positions; empty: the one of the settings
    QString radarServer;   ///< HOST or HOST:PORT; empty: the one of the settings
    QString basemapServer; ///< the same
    QString siteId;        ///< of the first radar item; empty: its own
    /// Index into the product table, with a site only; none: the item's own.
    std::optional<int> product;
    QString welcomeSiteId;     ///< of the first radar item while it has none; empty: it asks
    QStringList liveArguments; ///< for the server of live radar, as its command line takes them
    QString serverProgram; ///< that serves live radar and sample weather; empty: the installed one
    /// Qt's own options, to be given to the application object.
    QStringList qtArguments;
};

/// Reads a command line, the program's name first. Needs no application object, and none may exist
/// yet: Qt would take some of our options for its own.
[[nodiscard]] tl::expected<AppOptions, CommandLineAnswer>
readAppOptions(const QStringList& arguments);

} // namespace raincast
