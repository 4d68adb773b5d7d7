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
        Time = 1,
        Status,
        Latitude,
        NorthSouth,
        Longitude,
        EastWest,
        Speed,
        Course,
        Date,
        Variation,
        VariationDirection,
        Mode,
        Count
    };
    std::array<std::string_view, Count> fields;
    splitNmeaFields(text, fields);

    const std::string_view mode = fields[Mode];
    valid = fields[Status].starts_with('A') || (!mode.empty() && !mode.starts_with('N'));
    latitude = nmeaLatitude(fields[Latitude], fields[NorthSouth]);
    longitude = nmeaLongitude(fields[Longitude], fields[EastWest]);
    time = nmeaTime(fields[Time]) + dates.toTime(fields[Date]);
    speed = nmeaFloat(fields[Speed]);
    course = nmeaFloat(fields[Course]);
    magneticVariation = nmeaFloat(fields[Variation]);
    if (fields[VariationDirection].starts_with('E')) {
        magneticVariation = -magneticVariation;
    }
    return true;
}

} // namespace raincast::CNMEA_GPS
