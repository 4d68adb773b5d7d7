// SPDX-License-Identifier: MIT
#include "sample/sample_warnings.h"

#include "palette/warning_kinds.h"
#include "sample/sample_scan.h"
#include "sample/sample_storm.h"

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kKmPerDegree = 111.2;
constexpr double kHoldsMinutes = 45;
constexpr double kWarnedDbz = 58;
constexpr double kWarnedStrength = .55;

/// The place on the ground, on the sphere: azimuth and distance kept, as the frames keep them.
WeatherWarning::Corner onGround(const AntennaPosition& antenna, PlaneVector place) {
    const double distance = place.length() / kKmPerDegree / 180 * kPi;
    const double azimuth = std::atan2(place.east, place.north);
    const double from = antenna.latitude / 180 * kPi;
    const double latitude = std::asin(
        std::sin(from) * std::cos(distance) +
        std::cos(from) * std::sin(distance) * std::cos(azimuth)
    );
    const double east = std::atan2(
        std::sin(azimuth) * std::sin(distance) * std::cos(from),
        std::cos(distance) - std::sin(from) * std::sin(latitude)
    );
    return {latitude / kPi * 180, antenna.longitude + east / kPi * 180};
}

/// Narrow around the storm, wide where it may go.
WeatherWarning::Polygon
polygonFor(const AntennaPosition& antenna, const SampleStorm& storm, double issued) {
    const PlaneVector ahead = 1 / storm.motion.length() * storm.motion;
    const PlaneVector begin = storm.placeAt(issued) - .9 * storm.sizeKm * ahead;
    const PlaneVector end = storm.placeAt(issued + kHoldsMinutes) + .3 * storm.sizeKm * ahead;
    const PlaneVector narrow = .9 * storm.sizeKm * ahead.left();
    const PlaneVector wide = 1.5 * storm.sizeKm * ahead.left();
    WeatherWarning::Ring ring;
    for (const PlaneVector& corner : {begin + narrow, end + wide, end - wide, begin - narrow}) {
        ring.push_back(onGround(antenna, corner));
    }
    return {ring};
}

FileTime timeOf(double minute) {
    return kUnixEpoch + static_cast<FileTime>(minute) * kFileTimePerMinute;
}

WeatherWarning warningFor(const AntennaPosition& antenna, const SampleStorm& storm, double issued) {
    WeatherWarning warning;
    warning.kind = storm.rotating ? WarningKind::tornado : WarningKind::severeThunderstorm;
    warning.office = QStringLiteral("Sample weather");
    warning.headline = nameOf(warning.kind) + QStringLiteral(" of sample weather");
    warning.text = QStringLiteral("This warning is made up. Nothing of it has happened.");
    warning.instruction = QStringLiteral("Do nothing.");
    warning.begin = timeOf(issued);
    warning.end = timeOf(issued + kHoldsMinutes);
    warning.polygons = {polygonFor(antenna, storm, issued)};
    return warning;
}

} // namespace

std::vector<WeatherWarning>
sampleWarnings(const AntennaPosition& antenna, Range range, FileTime time) {
    const double reachKm = range == Range::longRange ? 460 : 230;
    const FileTime wholeMinutes = (time - kUnixEpoch) / kFileTimePerMinute;
    const auto minute = static_cast<double>(wholeMinutes);
    std::vector<WeatherWarning> warnings;
    for (const SampleStorm& storm : stormsAt(sampleClimate(antenna.id), minute, reachKm)) {
        // A storm's warnings follow each other from its birth on.
        const double issued = minute - std::fmod(minute - storm.birthMinute, kHoldsMinutes);
        const double strength = std::max(storm.strengthAt(issued), storm.strengthAt(issued + 10));
        if (storm.mostDbz >= kWarnedDbz && strength >= kWarnedStrength) {
            warnings.push_back(warningFor(antenna, storm, issued));
        }
    }
    return warnings;
}

} // namespace raincast
