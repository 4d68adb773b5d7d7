// SPDX-License-Identifier: MIT
#include "app/window_place.h"

#include "window/screen_metrics.h"

#include <QScreen>
#include <QWidget>

namespace raincast {

namespace {

constexpr QSize kFirstSize(640, 640);
// Nobody leaves a window smaller than this: such a setting is damaged.
constexpr QSize kLeastSize(100, 100);

/// Whether a window can be seen and used. Qt believes some places that no screen has.
bool isUsable(const QWidget& window) {
    const QRect screens = window.screen()->virtualGeometry();
    return window.size().boundedTo(kLeastSize) == kLeastSize &&
           window.size().boundedTo(screens.size()) == window.size() &&
           screens.intersects(window.geometry());
}

} // namespace

WindowPlace::Persistant WindowPlace::settings;

void WindowPlace::restore(QWidget& window, const QSize& asked) {
    if (!asked.isEmpty()) {
        settings.setForThisRun("geometry", settings.geometry, settings.geometry);
        window.resize(asked);
        return;
    }
    const auto kept = QByteArray::fromBase64(settings.geometry.toLatin1());
    const bool restored = window.restoreGeometry(kept);
    if (restored && isUsable(window)) {
        return;
    }
    window.resize(kFirstSize.boundedTo(ScreenMetrics::current().available));
    if (restored) {
        window.setWindowState(Qt::WindowNoState);
        window.move(window.screen()->availableGeometry().topLeft());
    }
}

void WindowPlace::keep(const QWidget& window) {
    settings.geometry = QString::fromLatin1(window.saveGeometry().toBase64());
}

void WindowPlace::Persistant::exchange(SettingsExchange& values) {
    values.string("geometry", geometry);
}

} // namespace raincast
