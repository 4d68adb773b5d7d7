// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

namespace raincast {

// Pictures at a smaller scale: every block of 2^shift × 2^shift pixels becomes one. Blocks that
// reach over the right or lower edge count the pixels that they have. A shift of 0 changes the
// format only.

/// A photograph-like ground: the average of each block. Format_RGB32.
[[nodiscard]] QImage shrinkGround(const QImage& picture, int shift);

/// Thin lines on transparent white: each block has the average colour of its opaque pixels. A line
/// of one pixel that crosses a block covers all of it, so that no line vanishes; fewer pixels cover
/// it in proportion. Format_ARGB32_Premultiplied.
[[nodiscard]] QImage shrinkLines(const QImage& picture, int shift);

/// Radar echoes on transparent white: each block has the most frequent of its opaque colours (of
/// several, the one met first, row by row), never a mixture, and is transparent only when all of it
/// is. Format_Indexed8 stays so; anything else becomes Format_ARGB32_Premultiplied.
[[nodiscard]] QImage shrinkEchoes(const QImage& picture, int shift);

/// At a larger scale: every pixel becomes a block of `times` × `times`, and the format stays.
[[nodiscard]] QImage enlarge(const QImage& picture, int times);

} // namespace raincast
