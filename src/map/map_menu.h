// SPDX-License-Identifier: MIT
#pragma once

#include "window/commands.h"
#include "window/menu_table.h"

class QMenu;

namespace raincast {

class CItemMapView;

inline constexpr MenuRow kMarkRows[] = {
    menuEntry(kAddMark, u"&Add Mark..."),
    menuEntry(kMarks, u"&Marks..."),
};
inline constexpr MenuRow kMapRows[] = {
    menuEntry(kFollowPosition, u"&Follow Position"),
    menuEntry(kGoToPosition, u"&Go to Position..."),
    menuEntry(kFitImage, u"&Whole Image\tHome"),
    menuEntry(kShowPosition, u"Show &Position"),
    menuEntry(kShowNavigation, u"Show &Navigation"),
    subMenu(u"&Marks", kMarkRows),
};
/// The map view's menu, a row for the menus of the items that are map views.
inline constexpr MenuRow kMapMenu = subMenu(u"&Map", kMapRows);

/// The menu of a place on the map.
inline constexpr MenuRow kMapPlaceRows[] = {
    menuEntry(kAddMarkHere, u"&Add Mark Here"),
    menuEntry(kCopyPosition, u"&Copy Position"),
    menuEntry(kCentreHere, u"Centre &Here"),
    menuEntry(kSetTargetHere, u"&Set as Target"),
};

/// Carries out a command of the map view, as far as it can be done at present; false for any other
/// command.
[[nodiscard]] bool runMapCommand(CItemMapView& view, int command);

/// Greys and checks the map view's entries of a menu.
void prepareMapMenu(const CItemMapView& view, QMenu& menu);

} // namespace raincast
