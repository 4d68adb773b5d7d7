// SPDX-License-Identifier: MIT
#pragma once

#include "radar/catalogue/image_geometry.h"

#include <QString>

class QSize;

namespace raincast {

class ViewTransform;

// A described picture has 600 × 550 pixels. A sharp one shows the same with 2 or 4 times as many
// each way: its detail. Its path on a server has "x2" or "x4" behind the first folder.

/// The detail whose pixels are one to one with those of the page; 1 where the described picture's
/// own are as fine, and in an area that has fewer pixels than the described picture: there is no
/// room for more. `area` is in pixels of the page, which are the device's.
[[nodiscard]] int wantedDetail(const ViewTransform& view, const QSize& area);

/// The detail of a layer with letters, which are of one height in pixels at any detail: so much
/// less that they are never smaller on a screen of many pixels to an inch than on others.
[[nodiscard]] int lettersDetail(int detail, double devicePixelRatio);

/// "/ridge/x2/Warnings/..." for "/ridge/Warnings/..."
[[nodiscard]] QString sharpPath(const QString& path, int detail);

/// The folder of a server in which all sharp pictures of a path's kind lie: "/ridge/x2/".
[[nodiscard]] QString sharpRoot(const QString& path, int detail);

} // namespace raincast
