// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

class QPainter;

namespace raincast {

/// Draws an icon on a square of 24 by 24, in the colour of a button's text.
using DrawIcon = void (*)(QPainter& painter, const QColor& ink);

/// An icon that is drawn anew for each size, and paler while it is disabled.
[[nodiscard]] QIcon paintedIcon(DrawIcon draw);

} // namespace raincast
