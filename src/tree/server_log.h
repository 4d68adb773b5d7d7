// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

namespace raincast {

/// Takes a line for the operator, without its line feed. May be called from any thread.
using ServerLog = std::function<void(const QString& line)>;

} // namespace raincast
