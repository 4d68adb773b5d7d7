// SPDX-License-Identifier: MIT
#include "window/screen_metrics.h"

#include <QGuiApplication>
#include <QInputDevice>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

constexpr double kMillimetresPerInch = 25.4;
constexpr double kTouchMillimetres = 7;
constexpr double kIconPixels = 32;
constexpr double kStandardDpi = 96;

std::optional<ScreenMetrics> standInInUse;

bool hasTouchScreen() {
    const auto devices = QInputDevice::devices();
    return std::any_of(devices.begin(), devices.end(), [](const QInputDevice* device) {
        return device->type() == QInputDevice::DeviceType::TouchScreen;
    });
}

ScreenMetrics read(const QScreen& screen) {
    ScreenMetrics metrics;
    metrics.logPixelsY = qRound(screen.logicalDotsPerInchY());
    metrics.devicePixelRatio = screen.devicePixelRatio();
    // Screens lie about their size (projectors, virtual machines): 60 to 400 dots per inch are
    // believed.
    const double physical = screen.physicalDotsPerInchY();
    const bool believable = physical >= 60 && physical <= 400;
    metrics.dotsPerMillimetre =
        (believable ? physical : screen.logicalDotsPerInchY()) / kMillimetresPerInch;
    metrics.touch = hasTouchScreen();
    return metrics;
}

} // namespace

ScreenMetrics ScreenMetrics::current() {
    if (standInInUse) {
        return *standInInUse;
    }
    const QScreen* screen =
        QCoreApplication::instance() != nullptr ? QGuiApplication::primaryScreen() : nullptr;
    if (screen == nullptr) {
        return {};
    }
    static const ScreenMetrics kept = read(*screen);
    ScreenMetrics metrics = kept;
    metrics.available = screen->availableSize();
    return metrics;
}

void ScreenMetrics::use(const std::optional<ScreenMetrics>& standIn) {
    standInInUse = standIn;
}

int ScreenMetrics::iconWidth() const {
    return static_cast<int>(kIconPixels * logPixelsY * devicePixelRatio / kStandardDpi);
}

int ScreenMetrics::touchHeight() const {
    return static_cast<int>(std::ceil(kTouchMillimetres * dotsPerMillimetre));
}

} // namespace raincast
