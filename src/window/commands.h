// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// The numbers of all commands of menus, tool buttons and keys, each with one meaning. Those below
/// 40900 are the handheld's. A number is never used again for another command.
enum Command : int {
    // Pages
    kPreviousPage = 40004,
    kNextPage = 40005,
    kPages = 40009,
    // A page's layout
    kToggleLayout = 40017,
    kAddItem = 40018,
    kDeleteItem = 40019,
    kBringToFront = 40021,
    // The program
    kExit = 40010,
    kAbout = 40029,
    kFullScreen = 40910,
    kShowKeys = 40912, ///< the sheet of keys
    kOpenMenu = 40913,
    // For the item that understands them: the tool buttons, the wheel and a pinch
    kZoomIn = 40030,
    kZoomOut = 40031,
    kUpdate = 40032,
    kStop = 40911, ///< of an update that runs
    // Radar
    kNearbyStations = 40028,
    kAnimation = 40033,
    kLayers = 40034,
    kStorage = 40035,
    kAllStations = 40044,
    kFirstProduct = 40930, ///< and the six after it, in the order of the product table
    kLastProduct = 40936,
    kPlayLoop = 40940, ///< or pause it
    kStepBack = 40941,
    kStepForward = 40942,
    kHalfSpeed = 40943, ///< and the three after it: normal, double, four times
    kFourTimesSpeed = 40946,
    kUtcTimes = 40947,
    kShowBar = 40948, ///< of a loop, or hide it
    kSavePicture = 40950,
    kCopyPicture = 40951,
    kSaveLoop = 40952,
    kTakeAlong = 40953,
    // Maps
    kAddMark = 40920,
    kMarks = 40921,
    kFollowPosition = 40922,
    kShowPosition = 40923,
    kShowNavigation = 40924,
    kAddMarkHere = 40925, ///< at the place that a held press or the right button chose
    kGoToPosition = 40926,
    kFitImage = 40927,
    kCopyPosition = 40960, ///< of that place, as is what follows
    kCentreHere = 40961,
    kSetTargetHere = 40962,
    // Reading the radar
    kShowScale = 40963,
    kRingsRoundRadar = 40964,
    kRingsRoundPosition = 40965,
    kMeasure = 40966,
    kMeasureFromHere = 40967, ///< the place as for kAddMarkHere
    kTrackStorm = 40968,
    // Warnings
    kListWarnings = 40970,   ///< a list of those in the picture
    kDismissWarning = 40971, ///< the bar that warns
};

/// Numbers in the page menu that are no commands: their entries mark the places where the program
/// puts entries of its own.
enum MenuPlace : int {
    kPageEntriesPlace = 40900, ///< the current page's own commands
    kPageListPlace = 40901,    ///< the enabled pages, to choose one
    kSettingsPlace = 40902,    ///< the settings dialogs; usually in a submenu
};

} // namespace raincast
