// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace raincast {

/// Cuts the text of a sentence, from its address field on, at its commas. The text ends at the `*`
/// of a checksum, at a NUL or at its end; fields beyond are empty. Text beyond the fields asked for
/// is not looked at.
void splitNmeaFields(std::string_view text, std::span<std::string_view> fields);

/// "4807.038", "N": degrees, north positive. 0 when the decimal point is not where it must be.
[[nodiscard]] double nmeaLatitude(std::string_view field, std::string_view hemisphere);

/// "01131.000", "E": degrees, east positive. 0 when the decimal point is not where it must be.
[[nodiscard]] double nmeaLongitude(std::string_view field, std::string_view hemisphere);

/// A time of day as it is written, unchecked.
struct NmeaTimeOfDay {
    std::int32_t hours = 0;
    std::int32_t minutes = 0;
    double seconds = 0;
};

/// "123519.99"; all 0 for an empty field.
[[nodiscard]] NmeaTimeOfDay nmeaTimeOfDay(std::string_view field);

/// "123519.99": the time since midnight in 100 ns units, fractions of a second dropped. 0 for an
/// empty field.
[[nodiscard]] FileTime nmeaTime(std::string_view field);

/// Dates of sentences, "230307" being 23 March 2007. A receiver repeats its date for a day: the
/// latest one is remembered and converted once.
class NmeaDates {
public:
    using Convert = FileTime (*)(int year, int month, int day);

    constexpr explicit NmeaDates(Convert convert = dateToTime) : m_convert(convert) {}

    /// 00:00 UTC of the date; 0 for an empty field and for a date that does not exist.
    [[nodiscard]] FileTime toTime(std::string_view field);

private:
    Convert m_convert;
    std::int32_t m_key = 0;
    FileTime m_result = 0;
};

} // namespace raincast
