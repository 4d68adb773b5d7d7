// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_rmc.h"

#include "position/nmea/nmea_fields.h"
#include "position/nmea/nmea_number.h"

#include <array>

namespace raincast::CNMEA_GPS {

namespace {

const RMC::Type type;

constinit NmeaDates dates;

} // namespace

// GPRMC,123519,A,4807.038,N,01131.000,E,022.4,084.4,230307,003.1,W,A
bool RMC::Parse(std::string_view text) {
    enum : std::size_t {
        kTime = 1,
        kStatus,
        kLatitude,
        kNorthSouth,
        kLongitude,
        kEastWest,
        kSpeed,
        kCourse,
        kDate,
        kVariation,
        kVariationDirection,
        kMode,
        kCount
    };
    std::array<std::string_view, kCount> fields;
    splitNmeaFields(text, fields);

    const std::string_view mode = fields[kMode];
    valid = fields[kStatus].starts_with('A') || (!mode.empty() && !mode.starts_with('N'));
    latitude = nmeaLatitude(fields[kLatitude], fields[kNorthSouth]);
    longitude = nmeaLongitude(fields[kLongitude], fields[kEastWest]);
    time = nmeaTime(fields[kTime]) + dates.toTime(fields[kDate]);
    speed = nmeaFloat(fields[kSpeed]);
    course = nmeaFloat(fields[kCourse]);
    magneticVariation = nmeaFloat(fields[kVariation]);
    if (fields[kVariationDirection].starts_with('E')) {
        magneticVariation = -magneticVariation;
    }
    return true;
}

} // namespace raincast::CNMEA_GPS
