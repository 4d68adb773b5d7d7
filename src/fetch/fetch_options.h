// SPDX-License-Identifier: MIT
#pragma once

#include "core/command_line.h"

#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

namespace raincast {

/// The options of raincast-fetch.
struct FetchOptions {
    QString siteId;
    int product = 0; ///< index into the product table
    int frames = 1;  ///< 1 to 25
    int intervalMinutes = 9;
    QString cacheFolder; ///< empty: the one that is chosen by default
    QString radarServer; ///< HOST or HOST:PORT
    bool warnings = true;
    bool quiet = false;
    bool verbose = false;
};

/// Reads the command line, the program's name first.
[[nodiscard]] tl::expected<FetchOptions, CommandLineAnswer>
readFetchOptions(const QStringList& arguments);

} // namespace raincast
