// SPDX-License-Identifier: MIT
#include "gps/nmea_number.h"

#include "platform/leading_number.h"

#include <cmath>
#include <limits>

namespace raincast {

double nmeaDouble(std::string_view text) {
    const double number = takeDouble(text).value_or(0);
    return std::isfinite(number) ? number : 0;
}

float nmeaFloat(std::string_view text) {
    const double number = nmeaDouble(text);
    return std::abs(number) <= std::numeric_limits<float>::max() ? static_cast<float>(number) : 0;
}

std::int32_t nmeaInt(std::string_view text) {
    return takeInt(text).value_or(0);
}

} // namespace raincast
