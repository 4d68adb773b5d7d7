// SPDX-License-Identifier: MIT
#pragma once

class QImage;

namespace raincast {

/// The pictures that are drawn on maps. The numbers are those of the program's resources: never
/// given to another picture.
enum class MapIcon { noFix = 119, fixB = 120, fixA = 121, mark = 123 };

/// The picture of a position's icon is this wide and high, the position at (half, half); the icon
/// itself fills the middle 16 (32) pixels.
[[nodiscard]] constexpr int positionPictureExtent(bool large) {
    return large ? 44 : 22;
}

/// An icon's picture, one pixel of it for one of the page. A light halo around a dark outline sets
/// it off from any map, and its shape from the other icons. `large` is for screens of high
/// resolution; a mark has one size for all. Drawn at the first call, which needs no application.
[[nodiscard]] const QImage& mapIconPicture(MapIcon icon, bool large);

} // namespace raincast
