// SPDX-License-Identifier: MIT
// Cities of any bytes: reading ends, and every city has a name and lies on the earth.
#include "maps/city_file.h"

#include <cmath>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    for (const raincast::City& city : raincast::readCities(bytes)) {
        const bool onEarth =
            std::abs(city.position.latitude) <= 90 && std::abs(city.position.longitude) <= 180;
        if (!onEarth || city.name.isEmpty()) {
            std::abort();
        }
    }
    return 0;
}
