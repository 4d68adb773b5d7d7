// SPDX-License-Identifier: MIT
#include "position/navigator/navigator_port.h"

#include "position/navigator/navigator_local_port.h"

namespace raincast {

namespace {

NavigatorPort* portInUse = nullptr;

} // namespace

NavigatorPort& NavigatorPort::current() {
    // Never destroyed: a static feed may unlink when other static objects are gone.
    static auto* const local = new LocalNavigatorPort;
    return portInUse != nullptr ? *portInUse : *local;
}

void NavigatorPort::use(NavigatorPort* port) {
    portInUse = port;
}

} // namespace raincast
