// SPDX-License-Identifier: MIT
#include "app/window_place.h"

#include "window/screen_metrics.h"

#include <QWidget>

namespace raincast {

namespace {

constexpr QSize kFirstSize(640, 640);
// Nobody leaves a window smaller than this: such a setting is damaged.
constexpr QSize kLeastSize(100, 100);

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
    if (!restored || window.size().boundedTo(kLeastSize) != kLeastSize) {
        window.resize(kFirstSize.boundedTo(ScreenMetrics::current().available));
    }
}

void WindowPlace::keep(const QWidget& window) {
    settings.geometry = QString::fromLatin1(window.saveGeometry().toBase64());
}

void WindowPlace::Persistant::exchange(SettingsExchange& values) {
    values.string("geometry", geometry);
}

} // namespace raincast
