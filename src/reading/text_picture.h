// SPDX-License-Identifier: MIT
#pragma once

class QImage;
class QPainter;
class QString;

namespace raincast {

/// Text in a box, as a painter's font and device have it: lines begin at the left, and break where
/// they are wider than `mostWidth` pixels. The pictures drawn last are kept: writing takes its
/// time, and a map is drawn again at every move.
[[nodiscard]] QImage textPicture(const QPainter& painter, const QString& text, int mostWidth);

} // namespace raincast
