// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

class QImage;
class QPointF;
class QWidget;

namespace raincast {

/// Where a widget stands in its top-level window, in device pixels: each edge is the logical edge
/// times the device pixel ratio, rounded, so that neighbours neither overlap nor gape at a
/// fractional ratio. A picture of this size fills the widget one to one.
[[nodiscard]] QRect deviceRect(const QWidget& widget);

/// A pointer's place in a widget, in device pixels, from QSinglePointEvent::scenePosition(). (The
/// position() of a child is rounded to whole logical pixels.)
[[nodiscard]] QPoint toDevicePixels(const QWidget& widget, const QPointF& scenePosition);

/// The place on the screen, in logical pixels, of a device pixel of a widget.
[[nodiscard]] QPoint toScreen(const QWidget& widget, const QPoint& devicePixel);

/// Gives an image a density: text has the same size on all that have the same.
void setDensity(QImage& image, double dotsPerInch);

} // namespace raincast
