// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

namespace raincast {

[[nodiscard]] QIcon playIcon();
[[nodiscard]] QIcon pauseIcon();
[[nodiscard]] QIcon stepBackIcon();
[[nodiscard]] QIcon stepForwardIcon();

} // namespace raincast
