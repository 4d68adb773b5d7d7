// SPDX-License-Identifier: MIT
#pragma once

#include "radar/bitmap.h"

#include <QSize>
#include <QString>

#include <functional>
#include <optional>

namespace raincast {

/// What was loaded of a file that is a picture.
struct LoadedPicture {
    Bitmap bitmap; ///< null where nobody looks at it
    QSize size{};  ///< in pixels; empty where nobody asks
};

/// Loads a picture of the cache; nothing when the file is none, or is not there. For any thread.
using PictureLoader = std::function<std::optional<LoadedPicture>(const QString& file)>;

/// How a program loads the pictures that come.
struct PictureLoaders {
    PictureLoader frame;
    PictureLoader warnings; ///< empty: they are kept in the cache, and nobody looks at them
    /// Whether a frame's file is known for a picture that need not be loaded, which takes no time
    /// to tell; empty: none is. For the thread of who loads.
    std::function<bool(const QString& file)> isKnown{};
};

} // namespace raincast
