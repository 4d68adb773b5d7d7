// SPDX-License-Identifier: MIT
#pragma once

#include <QGuiApplication>

namespace raincast {

/// Sees to it that there is an application that can draw text; it lives as long as the program.
inline void needGui() {
    static int count = 1;
    static char name[] = "server_tests";
    static char* names[] = {name, nullptr};
    static const QGuiApplication application(count, names);
}

} // namespace raincast
