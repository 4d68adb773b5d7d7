// SPDX-License-Identifier: MIT
#pragma once

class QPainter;
class QPoint;

namespace raincast {

/// Lines that can be seen on any picture: black beside white.
void drawMapLine(QPainter& painter, QPoint from, QPoint to);
/// An ellipse of the same, by its middle and its half axes in pixels.
void drawMapEllipse(QPainter& painter, QPoint middle, double width, double height);
/// A cross of the same on a place.
void drawMapCross(QPainter& painter, QPoint place);

} // namespace raincast
