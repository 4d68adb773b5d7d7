// SPDX-License-Identifier: MIT
#pragma once

#include "position/nmea/nmea_sentence_type.h"

namespace raincast::CNMEA_GPS {

/// Recommended minimum data: place, motion and time.
class RMC : public CNMEASentence {
public:
    class Type : public NmeaSentenceTypeOf<RMC> {
    public:
        Type() : NmeaSentenceTypeOf("RMC") {}
    };

    explicit RMC(const CNMEASentenceType& type) : CNMEASentence(type) {}
    bool Parse(std::string_view text) override;

    /// The status says "active", or the mode says how the position was found. (A void status with
    /// such a mode counts as valid.)
    bool valid = false;
    double latitude = 0;         ///< degrees, north positive
    double longitude = 0;        ///< degrees, east positive
    FileTime time = 0;           ///< UTC, whole seconds; without a date the time since midnight
    float speed = 0;             ///< knots
    float course = 0;            ///< degrees true
    float magneticVariation = 0; ///< degrees, west positive
};

} // namespace raincast::CNMEA_GPS
