// SPDX-License-Identifier: MIT
// raincast-fetch: the newest radar images of a site, from the server into the cache.
#include "fetch/fetch_command.h"

#include <QCoreApplication>
#include <QLoggingCategory>

#include <unistd.h>

#include <csignal>
#include <iostream>

int main(int argc, char** argv) {
    // A limit on file sizes is a download that fails, not the end of the program.
    std::signal(SIGXFSZ, SIG_IGN);
    const QCoreApplication application(argc, argv);
    // A frame that is no picture is passed over; what Qt thinks of it is not for standard error.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.imageio*=false"));
    const bool isTerminal = isatty(STDERR_FILENO) == 1;
    const auto result =
        raincast::runFetch(QCoreApplication::arguments(), {std::cout, std::cerr, isTerminal});
    // What could not be told is no success for whoever reads it. A full disk shows in the flush.
    return std::cout.flush().good() ? static_cast<int>(result)
                                    : static_cast<int>(raincast::FetchExit::noFrame);
}
