// SPDX-License-Identifier: MIT
#pragma once

class QPainter;
class QPoint;

namespace raincast {

/// Draws the sign that a map view follows the user's position: an arrowhead in a light halo, 13
/// pixels wide and 16 high.
void drawFollowIcon(QPainter& painter, const QPoint& topLeft);

} // namespace raincast
