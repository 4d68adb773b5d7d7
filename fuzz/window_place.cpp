// SPDX-License-Identifier: MIT
// The place of the main window as the settings keep it: whatever they hold, the window is one that
// can be used, and lies on the screen.
#include "app/window_place.h"

#include "input.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    static int count = 1;
    static char name[] = "viewer";
    static char* arguments[] = {name, nullptr};
    static const QApplication application(count, arguments);

    Input input(data, size);
    const bool isEncoded = input.byte() % 8 == 0;
    const QByteArray bytes = input.rest();
    WindowPlace::settings.geometry =
        isEncoded ? QString::fromUtf8(bytes) : QString::fromLatin1(bytes.toBase64());
    QWidget window;
    WindowPlace::restore(window, {});
    const QRect screen = QApplication::primaryScreen()->geometry();
    require(window.width() >= 100 && window.height() >= 100);
    require(window.width() <= screen.width() && window.height() <= screen.height());
    require(screen.intersects(window.geometry()));
    WindowPlace::keep(window);
    return 0;
}
