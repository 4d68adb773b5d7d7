// SPDX-License-Identifier: MIT
#include "units/pos_fmt_lat_lon.h"

#include "core/leading_number.h"
#include "core/text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>
#include <utility>

namespace raincast {

namespace {

using Style = CUnits::PosFmtLatLon::Style;

enum Rank { kRankDeg = 10, kRankDMS = 20, kRankDegMin = 30 };

const CUnits::PosFmtDegMin degMin;
const CUnits::PosFmtDMS dms;
const CUnits::PosFmtDeg deg;

// As std::printf's "%*.*f" in the C locale.
QString fixed(double number, int decimals, int width = 0, QChar fill = u' ') {
    std::array<char, 330> text; // the greatest double has 309 digits before its point
    const auto end = std::to_chars(
        text.data(), text.data() + text.size(), number, std::chars_format::fixed, decimals
    );
    return QString::fromLatin1(text.data(), end.ptr - text.data()).rightJustified(width, fill);
}

QString degreesText(double degrees) {
    return fixed(degrees, 5, 8);
}

QString degreesMinutesText(double degrees) {
    double whole = std::floor(degrees);
    double minutes = (degrees - whole) * 60;
    if (minutes > 59.9995) {
        whole += 1;
        minutes = 0;
    }
    return fixed(whole, 0) + u'°' + fixed(minutes, 3, 6, u'0') + u'\'';
}

QString degreesMinutesSecondsText(double degrees) {
    double whole = std::floor(degrees);
    const double allMinutes = (degrees - whole) * 60;
    double minutes = std::floor(allMinutes);
    double seconds = (allMinutes - minutes) * 60;
    if (seconds > 59.95) { // exactly 59.95, which is written as 60.0, is left alone
        seconds = 0;
        minutes += 1;
    }
    if (minutes >= 60) {
        whole += 1;
        minutes = 0;
    }
    return fixed(whole, 0) + u'°' + fixed(minutes, 0) + u'\'' + fixed(seconds, 1, 4, u'0') + u'"';
}

QString unsignedText(double degrees, Style style) {
    switch (style) {
    case Style::degreesMinutes:
        return degreesMinutesText(degrees);
    case Style::degreesMinutesSeconds:
        return degreesMinutesSecondsText(degrees);
    case Style::degrees:
    case Style::signedDegrees:
        break;
    }
    return degreesText(degrees) + u'°';
}

bool endsLatitude(char c) {
    return std::string_view("nNsS0123456789.").find(c) != std::string_view::npos;
}

std::size_t findSplit(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == ',' || (text[i] == ' ' && i > 0 && endsLatitude(text[i - 1]))) {
            return i;
        }
    }
    return std::string_view::npos;
}

// Degrees, minutes and seconds with one character between two of them. Beyond a number that is
// missing nothing is read.
double readDegrees(std::string_view part) {
    std::array<double, 3> fields{};
    for (double& field : fields) {
        const auto number = takeDouble(part);
        if (!number) {
            break;
        }
        field = *number;
        part.remove_prefix(part.empty() ? 0 : 1);
    }
    return fields[2] * 0.0002777777777777778 + fields[1] * 0.016666666666666666 + fields[0];
}

// 0 without one.
char hemisphere(std::string_view part) {
    for (const char c : part) {
        const char letter = static_cast<char>('a' <= c && c <= 'z' ? c - 'a' + 'A' : c);
        if ('A' <= letter && letter <= 'Z' && letter != 'D' && letter != 'E') {
            return letter;
        }
    }
    return 0;
}

bool readCoordinate(std::string_view part, double most, char negative, double& coordinate) {
    const double degrees = readDegrees(part);
    // Written so that not-a-number, the sum of two infinities, fails as well.
    if (!(std::abs(degrees) <= most)) {
        return false;
    }
    coordinate = hemisphere(part) == negative ? -degrees : degrees;
    return true;
}

} // namespace

const CUnits::PositionFormatType& CUnits::PositionFormatType::usual() {
    return degMin;
}

CUnits::PosFmtLatLon::PosFmtLatLon(QString name, Style style, int rank)
    : PositionFormatType(std::move(name), rank), m_style(style) {}

CUnits::PosFmtDeg::PosFmtDeg() : PosFmtLatLon(Text::marked("Degrees"), Style::degrees, kRankDeg) {}

CUnits::PosFmtDMS::PosFmtDMS()
    : PosFmtLatLon(Text::marked("Deg,Min,Sec"), Style::degreesMinutesSeconds, kRankDMS) {}

CUnits::PosFmtDegMin::PosFmtDegMin()
    : PosFmtLatLon(Text::marked("Deg,Min"), Style::degreesMinutes, kRankDegMin) {}

QString CUnits::PosFmtLatLon::format(const GeoPosition& position) const {
    return formatPosition(position, m_style);
}

bool CUnits::PosFmtLatLon::parse(QStringView text, GeoPosition& position) const {
    return parsePosition(text, position);
}

QString CUnits::PosFmtLatLon::formatPosition(const GeoPosition& position, Style style) {
    const QString latitude = formatCoordinate(position.latitude, "NS", style);
    const QString longitude = formatCoordinate(position.longitude, "EW", style);
    if (latitude.isEmpty() || longitude.isEmpty()) {
        return {};
    }
    return latitude + QStringLiteral(", ") + longitude;
}

QString
CUnits::PosFmtLatLon::formatCoordinate(double degrees, const char (&letters)[3], Style style) {
    if (!std::isfinite(degrees)) {
        return {};
    }
    if (style == Style::signedDegrees) {
        return degreesText(degrees);
    }
    const bool isNegative = degrees < 0;
    return unsignedText(std::abs(degrees), style) + QLatin1Char(letters[isNegative ? 1 : 0]);
}

bool CUnits::PosFmtLatLon::parsePosition(QStringView text, GeoPosition& position) {
    // One character for each of the text's; a character beyond Latin-1 becomes a question mark,
    // which is neither a digit nor a letter.
    const QByteArray latin = text.toLatin1();
    const std::string_view all(latin.data(), static_cast<std::size_t>(latin.size()));
    const std::size_t split = findSplit(all);
    if (split == std::string_view::npos) {
        return false;
    }
    const bool hasLatitude = readCoordinate(all.substr(0, split), 90, 'S', position.latitude);
    const bool hasLongitude = readCoordinate(all.substr(split + 1), 360, 'W', position.longitude);
    return hasLatitude && hasLongitude;
}

} // namespace raincast
