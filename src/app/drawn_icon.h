// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

namespace raincast {

/// Icons that are drawn as shapes, and so are sharp at every size and density. The icons of the
/// tool bar take the palette's colour of button texts.
[[nodiscard]] QIcon zoomInIcon();
[[nodiscard]] QIcon zoomOutIcon();
[[nodiscard]] QIcon updateIcon();
[[nodiscard]] QIcon stopIcon();

/// The program's icon: a radar's sweep over rain.
[[nodiscard]] QIcon programIcon();

} // namespace raincast
