// SPDX-License-Identifier: MIT
#pragma once

#include "radar/image/bitmap.h"

#include <QString>

namespace raincast {

/// One radar picture of a site at one time.
struct RadarFrame {
    Bitmap bitmap;    ///< null while it is not loaded
    QString timeText; ///< its time on the local clock, "1:05"; no mark of morning or afternoon
    QString path;     ///< the cached file
};

} // namespace raincast
