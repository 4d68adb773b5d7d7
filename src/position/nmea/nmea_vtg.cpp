// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_vtg.h"

#include "position/nmea/nmea_fields.h"
#include "position/nmea/nmea_number.h"

#include <array>

namespace raincast::CNMEA_GPS {

namespace {

const VTG::Type type;

} // namespace

// GPVTG,113.02,T,,M,0.142,N,0.263,K,A
bool VTG::Parse(std::string_view text) {
    enum : std::size_t { kCourse = 1, kSpeed = 5, kCount };
    std::array<std::string_view, kCount> fields;
    splitNmeaFields(text, fields);

    course = nmeaFloat(fields[kCourse]);
    speed = nmeaFloat(fields[kSpeed]);
    return true;
}

} // namespace raincast::CNMEA_GPS
