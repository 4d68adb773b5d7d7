// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// Templates of the weather item's dialogs. Never reuse a number for another dialog.
enum WeatherDialog {
    kAnimationDialog = 110,
    kLayersDialog = 111,
    kStorageDialog = 112,
    kServersDialog = 113,
};

} // namespace raincast
