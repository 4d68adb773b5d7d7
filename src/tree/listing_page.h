// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <string>
#include <string_view>
#include <vector>

namespace raincast {

/// A folder's listing as web servers write it: one line a name, each name a quoted link. The
/// viewer takes the quoted texts of this page for the names of frames.
[[nodiscard]] QByteArray listingPage(std::string_view path, const std::vector<std::string>& names);

} // namespace raincast
