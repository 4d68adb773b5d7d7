// SPDX-License-Identifier: MIT
#pragma once

#include "units/position_format_type.h"

namespace raincast {

/// The formats that write latitude, a comma and longitude, in one of four styles.
class CUnits::PosFmtLatLon : public PositionFormatType {
public:
    enum class Style {
        degrees = 0,               ///< " 41.50000°N"
        degreesMinutes = 1,        ///< "41°30.000'N"
        degreesMinutesSeconds = 2, ///< "41°30'00.0\"N"
        signedDegrees = 3,         ///< "41.50000", "-41.50000"; no format of the list has it
    };

    [[nodiscard]] QString format(const GeoPosition& position) const override;
    /// The same for every style, see parsePosition().
    [[nodiscard]] bool parse(QStringView text, GeoPosition& position) const override;

    [[nodiscard]] Style style() const { return m_style; }

    [[nodiscard]] static QString formatPosition(const GeoPosition& position, Style style);

    /// One coordinate in degrees. `letters` are the hemisphere's of 0 and above and of below 0.
    /// Rounded minutes and seconds do not show as 60, but for 59.95 seconds exactly. Empty if it is
    /// not finite.
    [[nodiscard]] static QString
    formatCoordinate(double degrees, const char (&letters)[3], Style style);

    /// Reads a latitude and a longitude. They are split by the first comma, or by the first space
    /// behind a digit, a point or a letter N or S. Each is up to three numbers (degrees, minutes,
    /// seconds), in the C locale, with one character between two of them; those at the end may be
    /// missing, and one without any is 0. The first letter of a part other than D and E is its
    /// hemisphere; S and W negate. (E is left out as an exponent's.)
    ///
    /// False without a split, and for a latitude beyond 90 or a longitude beyond 360 degrees.
    [[nodiscard]] static bool parsePosition(QStringView text, GeoPosition& position);

protected:
    PosFmtLatLon(QString name, Style style, int rank);
    ~PosFmtLatLon() override = default;

private:
    const Style m_style;
};

/// "Degrees".
class CUnits::PosFmtDeg final : public PosFmtLatLon {
public:
    PosFmtDeg();
};

/// "Deg,Min,Sec".
class CUnits::PosFmtDMS final : public PosFmtLatLon {
public:
    PosFmtDMS();
};

/// "Deg,Min".
class CUnits::PosFmtDegMin final : public PosFmtLatLon {
public:
    PosFmtDegMin();
};

} // namespace raincast
