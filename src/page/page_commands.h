// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// The commands of the page menu. The last three are no commands: their entries mark the places
/// where the application puts entries of its own.
enum PageCommand : int {
    kPreviousPage = 40004,
    kNextPage = 40005,
    kPages = 40009,
    kPageEntriesPlace = 40900, ///< the current page's own commands
    kPageListPlace = 40901,    ///< the enabled pages, to choose one
    kSettingsPlace = 40902,    ///< the settings dialogs; usually in a submenu
};

} // namespace raincast
