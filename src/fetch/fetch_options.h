// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <variant>

namespace raincast {

/// What raincast-fetch is asked to do.
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

/// Something to print instead of fetching: the help, the version, or what is wrong with the usage.
struct FetchAnswer {
    QString text;
    bool wrongUsage;
};

/// Reads the command line, the program's name first.
[[nodiscard]] std::variant<FetchOptions, FetchAnswer> readFetchOptions(const QStringList& arguments
);

} // namespace raincast
