// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_number.h"

#include "core/leading_number.h"
#include "position/finite_float.h"

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
