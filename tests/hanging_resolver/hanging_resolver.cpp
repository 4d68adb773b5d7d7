// SPDX-License-Identifier: MIT
// Looking up a name makes the file that HANGING_RESOLVER_FILE names, and never returns: as on a
// network whose name server swallows everything.
#include <fcntl.h>
#include <netdb.h>
#include <unistd.h>

#include <cstdlib>

extern "C" int getaddrinfo(
    const char* /*node*/, const char* /*service*/, const addrinfo* /*hints*/, addrinfo** /*found*/
) {
    if (const char* const file = std::getenv("HANGING_RESOLVER_FILE")) {
        close(open(file, O_WRONLY | O_CREAT, 0600));
    }
    for (;;) {
        pause();
    }
}
