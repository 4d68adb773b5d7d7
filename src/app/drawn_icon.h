// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

namespace raincast {

/// Icons that are drawn by shape, so that they are sharp at every size and density. Those of the
/// tool bar take the palette's colour of button texts.
[[nodiscard]] QIcon zoomInIcon();
[[nodiscard]] QIcon zoomOutIcon();
[[nodiscard]] QIcon updateIcon();

/// The program's own: a radar's sweep over rain.
[[nodiscard]] QIcon programIcon();

} // namespace raincast
