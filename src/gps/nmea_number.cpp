// SPDX-License-Identifier: MIT
#include "gps/nmea_number.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace raincast {

namespace {

bool isSpace(char c) {
    return c == ' ' || ('\t' <= c && c <= '\r');
}

// What std::from_chars does not take and atof does: blanks and a plus sign in front.
std::string_view withoutLead(std::string_view text) {
    while (!text.empty() && isSpace(text.front())) {
        text.remove_prefix(1);
    }
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') {
            return {};
        }
    }
    return text;
}

template<class Number>
Number read(std::string_view text) {
    text = withoutLead(text);
    Number number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return result.ec == std::errc{} ? number : 0;
}

} // namespace

double nmeaDouble(std::string_view text) {
    const double number = read<double>(text);
    return std::isfinite(number) ? number : 0;
}

float nmeaFloat(std::string_view text) {
    const double number = nmeaDouble(text);
    return std::abs(number) <= std::numeric_limits<float>::max() ? static_cast<float>(number) : 0;
}

std::int32_t nmeaInt(std::string_view text) {
    return read<std::int32_t>(text);
}

} // namespace raincast
