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
        Latitude = 2,
        NorthSouth,
        Longitude,
        EastWest,
        Quality,
        Satellites,
        Dilution,
        Altitude,
        Count = 14
    };
    std::array<std::string_view, Count> fields;
    splitNmeaFields(text, fields);

    quality = nmeaInt(fields[Quality]);
    latitude = nmeaLatitude(fields[Latitude], fields[NorthSouth]);
    longitude = nmeaLongitude(fields[Longitude], fields[EastWest]);
    altitude = nmeaFloat(fields[Altitude]);
    dilution = nmeaFloat(fields[Dilution]);
    satellites = nmeaInt(fields[Satellites]);
    return true;
}

} // namespace raincast::CNMEA_GPS
