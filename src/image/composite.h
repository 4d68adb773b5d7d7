// SPDX-License-Identifier: MIT
#pragma once

#include "radar/bitmap.h"

#include <QImage>
#include <QString>

namespace raincast {

/// Draws `source` over `target` at (0, 0), unscaled and clipped to the target; exactly white pixels
/// of the source are transparent. If the target is null, makes it first: width × height white
/// pixels. The drawing shows through every handle of the target.
///
/// A target of one byte a pixel stays so while its used colours and the source's fit into its 256
/// entries; otherwise it becomes Format_RGB32. The target is left null when there is no memory for
/// it. A null source draws nothing.
void CompositeOnto(Bitmap& target, const QImage& source, int width, int height);

/// Loads an image file and composites it onto `target` with the image's own size; false, and the
/// target untouched, when it cannot be loaded.
[[nodiscard]] bool LoadAndComposite(const QString& path, Bitmap& target);

} // namespace raincast
