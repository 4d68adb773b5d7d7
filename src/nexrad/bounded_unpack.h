// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace raincast {

/// What a bzip2 stream holds; nothing when it is damaged, cut off or holds more than `most` bytes.
/// What follows the stream is not looked at.
[[nodiscard]] std::optional<std::string> unpackBzip2(std::string_view packed, std::size_t most);

/// What the zlib stream at the front of `packed` holds, with that stream taken off the front;
/// nothing (and `packed` as it was) when it is damaged, cut off or holds more than `most` bytes.
[[nodiscard]] std::optional<std::string> unpackZlib(std::string_view& packed, std::size_t most);

} // namespace raincast
