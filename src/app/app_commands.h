// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// The commands of the main window's tool bar, menu and keys beside those of pages.
enum AppCommand : int {
    kAppExit = 40010,
    kAppAbout = 40029,
    kAppZoomIn = 40030,  ///< for the current page
    kAppZoomOut = 40031, ///< for the current page
    kAppUpdate = 40032,  ///< for the current page
    kAppFullScreen = 40910,
};

} // namespace raincast
