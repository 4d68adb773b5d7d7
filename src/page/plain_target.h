// SPDX-License-Identifier: MIT
#pragma once

class QImage;
class QPainter;
class QRect;

namespace raincast {

/// The picture behind a painter, if writing into it gives the same as drawing with the painter: an
/// opaque picture of 32 bits, in which all of `shown` may be drawn. Null otherwise.
[[nodiscard]] QImage* plainTarget(const QPainter& painter, const QRect& shown);

} // namespace raincast
