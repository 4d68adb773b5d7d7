// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "radar/bitmap.h"

#include <QString>

#include <optional>

namespace raincast {

/// One radar picture of a site at one time.
struct RadarFrame {
    Bitmap bitmap;    ///< null while it is not loaded
    QString timeText; ///< its time on the local clock, "1:05"; no mark of morning or afternoon;
                      ///< as files have it
    QString path;     ///< the cached file
};

/// When a frame was taken, as its file's name says; none if that has no time.
[[nodiscard]] std::optional<FileTime> takenAt(const RadarFrame& frame);

} // namespace raincast
