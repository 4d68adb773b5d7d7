// SPDX-License-Identifier: MIT
// Whatever a person types: a position that is read lies on the earth, and comes back from every
// format.
#include "units/pos_fmt_lat_lon.h"
#include "units/typed_position.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>

namespace {

using raincast::CUnits;
using raincast::GeoPosition;
using Style = CUnits::PosFmtLatLon::Style;

constexpr double kCoarsest = 0.05 / 3600; // degrees: half of a tenth of a second

void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

void requireRoundTrip(const GeoPosition& position, Style style) {
    const QString text = CUnits::PosFmtLatLon::formatPosition(position, style);
    GeoPosition again;
    require(CUnits::PosFmtLatLon::parsePosition(text, again));
    require(std::abs(again.latitude - position.latitude) < 1.001 * kCoarsest);
    require(std::abs(again.longitude - position.longitude) < 1.001 * kCoarsest);
    const auto typed = raincast::typedPosition(text);
    require(typed.has_value());
    require(std::abs(typed->latitude - again.latitude) < 1e-9);
    require(std::abs(typed->longitude - again.longitude) < 1e-9);
}

void requireOnEarth(const GeoPosition& position) {
    require(std::abs(position.latitude) <= 90 && std::abs(position.longitude) <= 360);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto* const bytes = reinterpret_cast<const char*>(data);
    const QString text = QString::fromUtf8(bytes, static_cast<qsizetype>(size));
    GeoPosition position;
    if (const auto typed = raincast::typedPosition(text)) {
        requireOnEarth(*typed);
    }
    if (CUnits::PosFmtLatLon::parsePosition(text, position)) {
        requireOnEarth(position);
        for (const Style style :
             {Style::degrees, Style::degreesMinutes, Style::degreesMinutesSeconds,
              Style::signedDegrees}) {
            requireRoundTrip(position, style);
        }
    }
    return 0;
}
