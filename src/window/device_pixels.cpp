// SPDX-License-Identifier: MIT
#include "window/device_pixels.h"

#include <QPointF>
#include <QWidget>

namespace raincast {

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
    return (scenePosition * widget.devicePixelRatioF()).toPoint() - deviceRect(widget).topLeft();
}

QPoint toScreen(const QWidget& widget, const QPoint& devicePixel) {
    const QPointF inWindow =
        QPointF(deviceRect(widget).topLeft() + devicePixel) / widget.devicePixelRatioF();
    return widget.window()->mapToGlobal(inWindow).toPoint();
}

} // namespace raincast
