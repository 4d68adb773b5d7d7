// SPDX-License-Identifier: MIT
#include "gps/nmea_number.h"

#include "gps/finite_float.h"
#include "platform/leading_number.h"

#include <cmath>

namespace raincast {

double nmeaDouble(std::string_view text) {
    const double number = takeDouble(text).value_or(0);
    return std::isfinite(number) ? number : 0;
}

float nmeaFloat(std::string_view text) {
    return finiteFloat(nmeaDouble(text));
}

std::int32_t nmeaInt(std::string_view text) {
    return takeInt(text).value_or(0);
}

} // namespace raincast
