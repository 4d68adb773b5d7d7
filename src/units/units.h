// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"

#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>

namespace raincast {

/// How the user reads distances, speeds and positions. Everything that shows one asks
///
///     CUnits::global().distanceText(metres)
///
/// each time it draws. A window that stays on the screen derives from CUnits::ChangeListener, which
/// says when to draw again.
class CUnits {
public:
    class ChangeListener;     ///< units/units_change_listener.h
    class PositionFormatType; ///< units/position_format_type.h
    class PosFmtLatLon;       ///< units/pos_fmt_lat_lon.h, and so the three that follow
    class PosFmtDeg;
    class PosFmtDegMin;
    class PosFmtDMS;
    class CDlgUnits;    ///< units/dlg_units.h
    class SettingsType; ///< offers the dialog in the "Settings" menu
    class Persistant;   ///< the settings record "CDefaultUnits"

    /// The distance units by their index, as the registry has it.
    enum DistanceUnit : std::uint32_t {
        kMiles = 0,
        kNauticalMiles = 1,
        kKilometres = 2,
        kMetres = 3,
        kFeet = 4,
        kYards = 5,
    };
    static constexpr std::size_t kDistanceUnitCount = 6;

    /// The speed units by their index, as the registry has it.
    enum SpeedUnit : std::uint32_t {
        kMilesPerHour = 0,
        kKnots = 1,
        kKilometresPerHour = 2,
        kMetresPerSecond = 3,
    };
    static constexpr std::size_t kSpeedUnitCount = 4;

    const PositionFormatType* positionFormat; ///< never null; not owned
    std::uint32_t units = kMiles;             ///< a DistanceUnit; any other counts as 0
    std::uint32_t speed = kMilesPerHour;      ///< a SpeedUnit; any other counts as 0
    std::array<std::uint8_t, 8> data{};       ///< kept and saved, not interpreted

    /// The user's choice: loaded and saved with the settings, edited by the dialog.
    [[nodiscard]] static const CUnits& global();
    /// Makes another choice the user's and tells every ChangeListener, if anything has changed.
    static void setGlobal(const CUnits& chosen);

    /// A copy of the global one.
    CUnits() : CUnits(global()) {}

    /// The name of a distance unit, as "NM".
    [[nodiscard]] static QString distanceUnitName(std::uint32_t unit);
    /// The speed unit that goes with a distance unit.
    [[nodiscard]] static SpeedUnit speedUnitFor(std::uint32_t distanceUnit);

    /// In the chosen units.
    [[nodiscard]] double distanceOf(double metres) const;
    [[nodiscard]] double speedOf(double knots) const;
    [[nodiscard]] QString distanceUnit() const { return distanceUnitName(units); }
    [[nodiscard]] QString speedUnit() const;

    /// A distance or speed for people, with its unit: "0.25 Mi", "3.2 Mi", "128 Mi", "6.4 kts".
    /// Metres, feet and yards are whole, speeds have one decimal below 100. The decimal point is
    /// a point. A number that is not finite reads as "-- Mi".
    [[nodiscard]] QString distanceText(double metres) const;
    [[nodiscard]] QString speedText(double knots) const;

    /// In the chosen format (see PositionFormatType::format).
    [[nodiscard]] QString formatPosition(const GeoPosition& position) const;
    /// Reads what a person typed, in whatever format (see PositionFormatType::parse).
    [[nodiscard]] static bool parsePosition(QStringView text, GeoPosition& position);

    friend bool operator==(const CUnits&, const CUnits&) = default;

private:
    explicit CUnits(const PositionFormatType* format) : positionFormat(format) {}
    static CUnits& mutableGlobal();
};

} // namespace raincast
