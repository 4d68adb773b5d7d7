// SPDX-License-Identifier: MIT
#include "tree/frame_source.h"

#include <array>

namespace raincast {

std::string_view wordOf(SourceState state) {
    constexpr std::array<std::string_view, 5> kWords = {
        "ok", "no-product", "radar-down", "provider", "network"};
    return kWords[static_cast<std::size_t>(state)];
}

} // namespace raincast
