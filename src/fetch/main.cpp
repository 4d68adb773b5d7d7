// SPDX-License-Identifier: MIT
// raincast-fetch: the newest radar images of a site, from the server into the cache.
#include "fetch/fetch_command.h"

#include <QCoreApplication>

#include <unistd.h>

#include <csignal>
#include <iostream>

int main(int argc, char** argv) {
    // A limit on file sizes makes a download fail; it must not end the program.
    std::signal(SIGXFSZ, SIG_IGN);
    const QCoreApplication application(argc, argv);
    const bool isTerminal = isatty(STDERR_FILENO) == 1;
    const auto result =
        raincast::runFetch(QCoreApplication::arguments(), {std::cout, std::cerr, isTerminal});
    // Output that could not be written is a failure. A full disk shows at the flush.
    return std::cout.flush().good() ? static_cast<int>(result)
                                    : static_cast<int>(raincast::FetchExit::noFrame);
}
