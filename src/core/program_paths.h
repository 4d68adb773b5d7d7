// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace raincast {

/// The folder of the program's own file, links resolved, without a trailing slash: data files that
/// belong to the program stand there. Needs no application object. Empty if the system does not
/// say.
[[nodiscard]] QString programFolder();

/// The text before the last "/" of a path; empty without one (and for a file in the root
/// folder, so that the result followed by "/" and a name is a path again).
[[nodiscard]] QString directoryPart(const QString& path);

} // namespace raincast
