// SPDX-License-Identifier: MIT
#include "units/units.h"

#include "core/text.h"
#include "persist/persistant_data.h"
#include "units/position_format_type.h"
#include "units/units_change_listener.h"

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

struct Unit {
    const char* name;
    float factor; ///< units per metre, or per knot
    int mostDecimals;
};

struct DistanceRow : Unit {
    CUnits::SpeedUnit speed;
};

constexpr DistanceRow kDistances[] = {
    {{Text::marked("Mi"), 0.000621371204F, 2}, CUnits::kMilesPerHour},
    {{Text::marked("NM"), 0.000539956789F, 2}, CUnits::kKnots},
    {{Text::marked("km"), 0.001F, 2}, CUnits::kKilometresPerHour},
    {{Text::marked("m"), 1.0F, 0}, CUnits::kMetresPerSecond},
    {{Text::marked("ft"), 3.281F, 0}, CUnits::kMilesPerHour},
    {{Text::marked("yds"), 1.0936F, 0}, CUnits::kMilesPerHour},
};
static_assert(std::size(kDistances) == CUnits::kDistanceUnitCount);

constexpr Unit kSpeeds[] = {
    {Text::marked("mph"), 1.1507795F, 1},
    {Text::marked("kts"), 1.0F, 1},
    {Text::marked("km/h"), 1.852F, 1},
    {Text::marked("m/s"), 0.51444447F, 1},
};
static_assert(std::size(kSpeeds) == CUnits::kSpeedUnitCount);

const DistanceRow& distanceRow(std::uint32_t unit) {
    return kDistances[unit < std::size(kDistances) ? unit : 0];
}

const Unit& speedRow(std::uint32_t unit) {
    return kSpeeds[unit < std::size(kSpeeds) ? unit : 0];
}

// As many digits as a person has a use for, seen from the rounded number: 0.996 is 1.0, not 1.00.
int decimalsFor(double magnitude) {
    if (magnitude < 0.995) {
        return 2;
    }
    return magnitude < 99.95 ? 1 : 0;
}

QString numberText(double number, int mostDecimals) {
    constexpr double kTooLong = 1e9;
    if (!std::isfinite(number)) {
        return QStringLiteral("--");
    }
    if (std::abs(number) >= kTooLong) {
        return Text::number(number, 'g', 3);
    }
    const int decimals = std::min(mostDecimals, decimalsFor(std::abs(number)));
    const double scale = std::pow(10.0, decimals);
    const double rounded = std::round(number * scale) / scale;
    return Text::number(rounded == 0 ? 0 : rounded, 'f', decimals); // never "-0"
}

QString withUnit(double amount, const Unit& unit) {
    return numberText(amount * unit.factor, unit.mostDecimals) + u' ' + Text::of(unit.name);
}

} // namespace

class CUnits::Persistant : public PersistantData {
public:
    Persistant() : PersistantData("CDefaultUnits") {}

private:
    void exchange(SettingsExchange& values) override {
        CUnits chosen;
        QString format = values.loading() ? QString() : chosen.positionFormat->name();
        values.dword("units", chosen.units);
        values.dword("speed", chosen.speed);
        values.binary("data", std::span<std::uint8_t>(chosen.data));
        values.string("posnfmt", format);
        if (values.loading()) {
            chosen.units = chosen.units < kDistanceUnitCount ? chosen.units : kMiles;
            chosen.speed = chosen.speed < kSpeedUnitCount ? chosen.speed : kMilesPerHour;
            chosen.positionFormat = &PositionFormatType::named(format);
            setGlobal(chosen);
        }
    }

    static Persistant s_record;
};

CUnits::Persistant CUnits::Persistant::s_record;

CUnits& CUnits::mutableGlobal() {
    static CUnits chosen(&PositionFormatType::usual());
    return chosen;
}

const CUnits& CUnits::global() {
    return mutableGlobal();
}

void CUnits::setGlobal(const CUnits& chosen) {
    if (chosen != global()) {
        mutableGlobal() = chosen;
        ChangeListener::tellAll();
    }
}

QString CUnits::distanceUnitName(std::uint32_t unit) {
    return Text::of(distanceRow(unit).name);
}

CUnits::SpeedUnit CUnits::speedUnitFor(std::uint32_t distanceUnit) {
    return distanceRow(distanceUnit).speed;
}

double CUnits::distanceOf(double metres) const {
    return metres * distanceRow(units).factor;
}

double CUnits::speedOf(double knots) const {
    return knots * speedRow(speed).factor;
}

QString CUnits::speedUnit() const {
    return Text::of(speedRow(speed).name);
}

QString CUnits::distanceText(double metres) const {
    return withUnit(metres, distanceRow(units));
}

QString CUnits::speedText(double knots) const {
    return withUnit(knots, speedRow(speed));
}

QString CUnits::formatPosition(const GeoPosition& position) const {
    return positionFormat->format(position);
}

bool CUnits::parsePosition(QStringView text, GeoPosition& position) {
    return global().positionFormat->parse(text, position);
}

} // namespace raincast
