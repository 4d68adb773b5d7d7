// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace raincast {

/// The folder for the user's application data ($XDG_DATA_HOME, or ~/.local/share), made if missing.
/// Empty when there is none and none can be made.
[[nodiscard]] QString applicationDataRoot();

/// A folder below applicationDataRoot(), made with its parents if missing, whether or not that
/// succeeds. Empty when there is no root.
[[nodiscard]] QString folderInApplicationData(const QString& relative);

/// The program's own folder there, "Quorvane/Raincast_1"; as folderInApplicationData.
[[nodiscard]] QString applicationFolder();

} // namespace raincast
