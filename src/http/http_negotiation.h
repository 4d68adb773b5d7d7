// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace raincast {

/// Whether a header "Accept-Encoding" lets an answer come in gzip's form: "gzip, br", "*",
/// "gzip;q=0.5". Not with a weight of 0, nor with one that makes no sense.
[[nodiscard]] bool acceptsGzip(std::string_view acceptEncoding);

/// Whether a header "If-None-Match" names a tag (with its quotes), weak or strong, or is "*".
[[nodiscard]] bool namesTag(std::string_view ifNoneMatch, std::string_view tag);

} // namespace raincast
