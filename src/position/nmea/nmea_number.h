// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace raincast {

/// The numbers of NMEA fields, read as the C library's atof and atoi read them, but in the C locale
/// whatever the user's is: blanks and a sign may lead, whatever follows the number is ignored, and
/// a text that does not start with a number is 0.
///
/// Receivers send decimal numbers. What else a C library would take, or would leave undefined, is 0
/// as well: infinities, not-a-number, hexadecimal digits, and any number beyond its type's range.
[[nodiscard]] double nmeaDouble(std::string_view text);

/// The same, narrowed. Never infinite.
[[nodiscard]] float nmeaFloat(std::string_view text);

[[nodiscard]] std::int32_t nmeaInt(std::string_view text);

} // namespace raincast
