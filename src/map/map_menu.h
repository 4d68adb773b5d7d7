// SPDX-License-Identifier: MIT
#pragma once

#include "window/commands.h"
#include "window/menu_table.h"

class QMenu;

namespace raincast {

class CItemMapView;

inline constexpr MenuRow kMarkRows[] = {
    menuEntry(kAddMark, Text::marked("&Add Mark...")),
    menuEntry(kMarks, Text::marked("&Marks...")),
};
inline constexpr MenuRow kMapRows[] = {
    menuEntry(kFollowPosition, Text::marked("&Follow Position")),
    menuEntry(kGoToPosition, Text::marked("&Go to Position...")),
    menuEntry(kFitImage, Text::marked("&Whole Image\tHome")),
    menuEntry(kShowPosition, Text::marked("Show &Position")),
    menuEntry(kShowNavigation, Text::marked("Show &Navigation")),
    subMenu(Text::marked("&Marks"), kMarkRows),
};
/// The map view's menu, a row for the menus of the items that are map views.
inline constexpr MenuRow kMapMenu = subMenu(Text::marked("&Map"), kMapRows);

/// The menu of a place on the map.
inline constexpr MenuRow kMapPlaceRows[] = {
    menuEntry(kAddMarkHere, Text::marked("&Add Mark Here")),
    menuEntry(kCopyPosition, Text::marked("&Copy Position")),
    menuEntry(kCentreHere, Text::marked("Centre &Here")),
    menuEntry(kSetTargetHere, Text::marked("&Set as Target")),
};

/// Carries out a command of the map view, as far as it can be done at present; false for any other
/// command.
[[nodiscard]] bool runMapCommand(CItemMapView& view, int command);

/// Greys and checks the map view's entries of a menu.
void prepareMapMenu(const CItemMapView& view, QMenu& menu);

} // namespace raincast
