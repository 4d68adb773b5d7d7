// SPDX-License-Identifier: MIT
#include "radar/frame.h"

#include "radar/catalogue/frame_name.h"

#include <QFileInfo>

namespace raincast {

std::optional<FileTime> takenAt(const RadarFrame& frame) {
    return frameTime(QFileInfo(frame.path).fileName());
}

} // namespace raincast
