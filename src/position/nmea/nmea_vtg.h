// SPDX-License-Identifier: MIT
#pragma once

#include "position/nmea/nmea_sentence_type.h"

namespace raincast::CNMEA_GPS {

/// Course and speed over ground.
class VTG : public CNMEASentence {
public:
    class Type : public NmeaSentenceTypeOf<VTG> {
    public:
        Type() : NmeaSentenceTypeOf("VTG") {}
    };

    explicit VTG(const CNMEASentenceType& type) : CNMEASentence(type) {}
    bool Parse(std::string_view text) override;

    float speed = 0;  ///< knots
    float course = 0; ///< degrees true
};

} // namespace raincast::CNMEA_GPS
