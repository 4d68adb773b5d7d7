// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"

#include <cstdint>

namespace raincast {

/// How a position was found.
enum FixType : std::int32_t {
    kFixNone = 0,
    kFixGps = 1,
    kFixDifferential = 2,
    kFixSimulated = 3,
    kFixEstimated = 4,
    kFixRealTimeKinematic = 5,
    kFixPrecise = 6,
    kFixManual = 7,
};

/// A position that none has followed for so long counts as lost: it may be taken for a live one no
/// longer.
inline constexpr int kSecondsToLoss = 9;

/// Where the user is and how they move. Published through Listener<CDataGPSPosition>.
///
/// The numbers come from a receiver and are not checked: always finite, but possibly beyond the
/// poles or the date line. Without a fix they are the last known ones.
struct CDataGPSPosition {
    double latitude = 0;         ///< degrees, north positive
    double longitude = 0;        ///< degrees, east positive
    FileTime time = 0;           ///< UTC
    float speed = 0;             ///< knots
    float course = 0;            ///< degrees true
    float altitude = 0;          ///< metres as a rule; as the receiver reports it
    float dilution = 0;          ///< horizontal dilution of precision
    std::int32_t satellites = 0; ///< in use
    float extra1 = 400;          ///< carried to and from the navigator
    float extra2 = 0;            ///< carried to and from the navigator
    std::int32_t fixType = kFixNone;

    /// True when there is a fix.
    [[nodiscard]] bool valid() const { return fixType != kFixNone; }

    /// Sets fixType from the quality digit of a GGA sentence; any other number leaves it.
    void setFixTypeFromQuality(std::int32_t quality);
};

} // namespace raincast
