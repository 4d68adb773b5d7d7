// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace raincast {

/// Take the number that a text starts with off its front, as std::scanf's %lf and %d do, but in the
/// C locale whatever the user's is: blanks and a sign may lead, and the longest part that makes
/// sense is taken ("1e" is a 1 with an "e" behind it). Decimal digits only: hexadecimal ones, "inf"
/// and "nan" are not numbers.
///
/// Empty, with the text as it was, when the text does not start with a number. A number beyond what
/// the type holds is taken too: as infinity by takeDouble (also one too close to 0), as an empty
/// result by takeInt.
[[nodiscard]] std::optional<double> takeDouble(std::string_view& text);
[[nodiscard]] std::optional<std::int32_t> takeInt(std::string_view& text);

} // namespace raincast
