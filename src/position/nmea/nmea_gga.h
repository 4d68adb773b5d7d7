// SPDX-License-Identifier: MIT
#pragma once

#include "position/nmea/nmea_sentence_type.h"

#include <cstdint>

namespace raincast::CNMEA_GPS {

/// Fix data: place, height, and how good they are.
class GGA : public CNMEASentence {
public:
    class Type : public NmeaSentenceTypeOf<GGA> {
    public:
        Type() : NmeaSentenceTypeOf("GGA") {}
    };

    explicit GGA(const CNMEASentenceType& type) : CNMEASentence(type) {}
    bool Parse(std::string_view text) override;

    double latitude = 0;         ///< degrees, north positive
    double longitude = 0;        ///< degrees, east positive
    float altitude = 0;          ///< as sent; the sentence's unit is not looked at
    float dilution = 0;          ///< horizontal dilution of precision
    std::int32_t satellites = 0; ///< in use
    std::int32_t quality = 0;    ///< the fix quality digit, 0 to 8; 0 means no fix
};

} // namespace raincast::CNMEA_GPS
