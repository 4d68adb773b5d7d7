// SPDX-License-Identifier: MIT
#include "window/device_pixels.h"

#include <QImage>
#include <QPointF>
#include <QWidget>

#include <algorithm>

namespace raincast {

namespace {

// Far outside of any window, and far from where sums of such places would overflow.
constexpr double kFarthest = 1 << 20;

// Not-a-number counts as far outside.
double bounded(double pixels) {
    return pixels > -kFarthest ? std::min(pixels, kFarthest) : -kFarthest;
}

} // namespace

QRect deviceRect(const QWidget& widget) {
    const double ratio = widget.devicePixelRatioF();
    const QPoint origin = widget.mapTo(widget.window(), QPoint(0, 0));
    const int left = qRound(origin.x() * ratio);
    const int top = qRound(origin.y() * ratio);
    const int right = qRound((origin.x() + widget.width()) * ratio);
    const int bottom = qRound((origin.y() + widget.height()) * ratio);
    return {left, top, right - left, bottom - top};
}

QPoint toDevicePixels(const QWidget& widget, const QPointF& scenePosition) {
    const QPointF place = scenePosition * widget.devicePixelRatioF();
    const QPoint inWindow(qRound(bounded(place.x())), qRound(bounded(place.y())));
    return inWindow - deviceRect(widget).topLeft();
}

QPoint toScreen(const QWidget& widget, const QPoint& devicePixel) {
    const QPointF inWindow =
        QPointF(deviceRect(widget).topLeft() + devicePixel) / widget.devicePixelRatioF();
    return widget.window()->mapToGlobal(inWindow).toPoint();
}

void setDensity(QImage& image, double dotsPerInch) {
    const int dotsPerMetre = qRound(dotsPerInch / 0.0254); // an inch in metres
    image.setDotsPerMeterX(dotsPerMetre);
    image.setDotsPerMeterY(dotsPerMetre);
}

} // namespace raincast
