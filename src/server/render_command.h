// SPDX-License-Identifier: MIT
#pragma once

#include <iosfwd>
#include <string>

namespace raincast {

/// Renders the Level III product in a file to a GIF and writes its world file beside it (OUT.gfw
/// for OUT.gif); the detail is that of ImageGeometry. Prints site, product, time and code in one
/// line on `out`, or one sentence about the error on `err`. The exit status: 0, or 1 when nothing
/// was rendered.
[[nodiscard]] int renderCommand(
    const std::string& file, const std::string& outFile, int detail, std::ostream& out,
    std::ostream& err
);

} // namespace raincast
