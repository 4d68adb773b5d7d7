// SPDX-License-Identifier: MIT
#pragma once

namespace raincast {

/// Templates of the weather item's dialogs. The numbers are never used again for others.
enum WeatherDialog {
    kAnimationDialog = 110,
    kLayersDialog = 111,
    kStorageDialog = 112,
    kServersDialog = 113,
};

} // namespace raincast
