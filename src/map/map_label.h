// SPDX-License-Identifier: MIT
#pragma once

class QPainter;
class QPoint;
class QString;

namespace raincast {

/// Writes a short text on a map, dark in a light halo so that it can be read on any picture: on one
/// line, cut to a few words' length, in the painter's font. Its middle line starts at `leftMiddle`.
void drawMapLabel(QPainter& painter, const QPoint& leftMiddle, const QString& text);

} // namespace raincast
