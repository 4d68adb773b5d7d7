// SPDX-License-Identifier: MIT
#include "units/units.h"

#include "persist/persistant_data.h"
#include "units/position_format_type.h"
#include "units/units_change_listener.h"

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

struct Unit {
    QLatin1String name;
    float factor; ///< units per metre, or per knot
    int mostDecimals;
};

struct DistanceRow : Unit {
    CUnits::SpeedUnit speed;
};

constexpr DistanceRow kDistances[] = {
    {{QLatin1String("Mi"), 0.000621371204F, 2}, CUnits::kMilesPerHour},
    {{QLatin1String("NM"), 0.000539956789F, 2}, CUnits::kKnots},
    {{QLatin1String("km"), 0.001F, 2}, CUnits::kKilometresPerHour},
    {{QLatin1String("m"), 1.0F, 0}, CUnits::kMetresPerSecond},
    {{QLatin1String("ft"), 3.281F, 0}, CUnits::kMilesPerHour},
    {{QLatin1String("yds"), 1.0936F, 0}, CUnits::kMilesPerHour},
};
static_assert(std::size(kDistances) == CUnits::kDistanceUnitCount);

constexpr Unit kSpeeds[] = {
    {QLatin1String("mph"), 1.1507795F, 1},
    {QLatin1String("kts"), 1.0F, 1},
    {QLatin1String("km/h"), 1.852F, 1},
    {QLatin1String("m/s"), 0.51444447F, 1},
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
        return QString::number(number, 'g', 3);
    }
    const int decimals = std::min(mostDecimals, decimalsFor(std::abs(number)));
    const double scale = std::pow(10.0, decimals);
    const double rounded = std::round(number * scale) / scale;
    return QString::number(rounded == 0 ? 0 : rounded, 'f', decimals); // never "-0"
}

QString withUnit(double amount, const Unit& unit) {
    return numberText(amount * unit.factor, unit.mostDecimals) + u' ' + unit.name;
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
    return distanceRow(unit).name;
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
    return speedRow(speed).name;
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
