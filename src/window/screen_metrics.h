// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

#include <optional>

namespace raincast {

/// What windows and dialogs need to know about the screen.
struct ScreenMetrics {
    int logPixelsY = -1;                  ///< logical dots per inch; -1 without a screen
    double devicePixelRatio = 1;          ///< device pixels per logical pixel
    double dotsPerMillimetre = 96 / 25.4; ///< logical pixels on the glass
    bool touch = false;                   ///< a finger is a likely pointer
    QSize available{640, 480};            ///< room for a window, in logical pixels

    /// The primary screen's. All but the room is read once, when there first is a screen, and
    /// kept; a stand-in is returned as it is.
    [[nodiscard]] static ScreenMetrics current();

    /// Puts figures in the screen's place; none puts the screen's back.
    static void use(const std::optional<ScreenMetrics>& standIn);

    /// Whether the screen has more than 120 dots per inch in device pixels: icons and grips double
    /// their size then.
    [[nodiscard]] bool highResolution() const { return logPixelsY * devicePixelRatio > 120; }

    /// The width of a system icon, in device pixels: 32 at 96 dots per inch.
    [[nodiscard]] int iconWidth() const;

    /// The least height of something that a finger must hit: 7 mm, in logical pixels.
    [[nodiscard]] int touchHeight() const;
};

} // namespace raincast
