// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "radar/frame.h"
#include "radar/warnings_file.h"

#include <QString>

#include <vector>

namespace raincast {

inline constexpr int kLeastFrames = 2;
inline constexpr int kMostFrames = 25;
inline constexpr int kMostFrameInterval = 60;

/// A site's radar images, and how they are shown. The item that shows them owns it; an update
/// (radar_update.h) works on it, and whenever it asks for a repaint the state can be painted.
struct RadarState {
    /// One of the site table's, as it is part of paths; empty: no site chosen yet.
    QString siteId;
    int product = 0;         ///< index into the product table
    int frameCount = 6;      ///< frames of an animation, kLeastFrames to kMostFrames
    int frameInterval = 9;   ///< least minutes between two frames, 1 to kMostFrameInterval
    bool animate = false;    ///< off: fetch only the newest frame
    bool autoUpdate = false; ///< fetch new frames without being asked
    bool showWarnings = true;
    QString cacheFolder; ///< root of the image cache; while it is empty nothing can be fetched
    QString cacheBranch; ///< folder in the root for the present weather; empty: the root itself

    std::vector<RadarFrame> frames; ///< oldest first
    std::size_t position = 0;       ///< the animation's place in frames; may be their end
    int animationCounter = 0;       ///< ticks since the animation started over
    RadarFrame current;             ///< copy of the frame on screen, its bitmap shared
    int imageWidth = 0;             ///< pixel size of the last image loaded
    int imageHeight = 0;
    FileTime nextUpdate = 0; ///< earliest time of the next automatic update
    QString status;          ///< painted over the picture; empty: none
    QString cause;           ///< of a failure or an outage, a line below the status; empty: unknown
    RadarWarnings warnings;  ///< the last that came, whether or not they are to be shown

    /// Where the present weather's files are, each site's in its folder.
    [[nodiscard]] QString cacheRoot() const {
        const bool isRoot = cacheFolder.isEmpty() || cacheBranch.isEmpty();
        return isRoot ? cacheFolder : cacheFolder + u'/' + cacheBranch;
    }
};

} // namespace raincast
