// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace raincast {

/// The folder for the user's application data ($XDG_DATA_HOME, or ~/.local/share), made if missing.
/// Empty when it is missing and cannot be made.
[[nodiscard]] std::optional<QString> applicationDataRoot();

/// A folder below applicationDataRoot(). Makes it with its parents if missing, and names it whether
/// or not that succeeds. Empty without a root.
[[nodiscard]] std::optional<QString> folderInApplicationData(const QString& relative);

/// The program's own folder there, "Quorvane/Raincast_1"; as folderInApplicationData.
[[nodiscard]] std::optional<QString> applicationFolder();

} // namespace raincast
