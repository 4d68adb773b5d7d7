// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_gga.h"

#include "position/nmea/nmea_fields.h"
#include "position/nmea/nmea_number.h"

#include <array>

namespace raincast::CNMEA_GPS {

namespace {

const GGA::Type type;

} // namespace

// GPGGA,093802,5213.1439,N,02100.6511,E,2,10,0.9,137.2,M,36.2,M,
bool GGA::Parse(std::string_view text) {
    enum : std::size_t {
        kLatitude = 2,
        kNorthSouth,
        kLongitude,
        kEastWest,
        kQuality,
        kSatellites,
        kDilution,
        kAltitude,
        kCount = 14
    };
    std::array<std::string_view, kCount> fields;
    splitNmeaFields(text, fields);

    quality = nmeaInt(fields[kQuality]);
    latitude = nmeaLatitude(fields[kLatitude], fields[kNorthSouth]);
    longitude = nmeaLongitude(fields[kLongitude], fields[kEastWest]);
    altitude = nmeaFloat(fields[kAltitude]);
    dilution = nmeaFloat(fields[kDilution]);
    satellites = nmeaInt(fields[kSatellites]);
    return true;
}

} // namespace raincast::CNMEA_GPS
