// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_fields.h"

#include "position/nmea/nmea_number.h"

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

constexpr double kDegreesPerMinute = 0.016666666666666666;

// Beyond this no number of seconds means anything, and the sum of a time stays far from overflow.
constexpr double kMaxSeconds = 1e9;

// The part of a field from an index on, however short the field is.
std::string_view from(std::string_view field, std::size_t index) {
    return field.substr(std::min(index, field.size()));
}

std::string_view part(std::string_view field, std::size_t index, std::size_t length) {
    return from(field, index).substr(0, length);
}

bool beginsWith(std::string_view text, char c) {
    return !text.empty() && text.front() == c;
}

double coordinate(std::string_view field, std::size_t degreeDigits, bool negative) {
    const std::size_t point = degreeDigits + 2;
    if (field.size() <= point || field[point] != '.') {
        return 0;
    }
    const double minutes = nmeaDouble(from(field, degreeDigits));
    const double degrees = nmeaInt(part(field, 0, degreeDigits));
    const double value = degrees + minutes * kDegreesPerMinute;
    return negative ? -value : value;
}

bool isSixDigits(std::string_view field) {
    return field.size() == 6 &&
           std::all_of(field.begin(), field.end(), [](char c) { return '0' <= c && c <= '9'; });
}

} // namespace

void splitNmeaFields(std::string_view text, std::span<std::string_view> fields) {
    const char* at = text.data();
    const char* end = at + text.size();
    for (std::string_view& field : fields) {
        const char* start = at;
        while (at != end && *at != ',' && *at != '*' && *at != '\0') {
            ++at;
        }
        field = {start, static_cast<std::size_t>(at - start)};
        if (at != end && *at == ',') {
            ++at;
        } else {
            end = at;
        }
    }
}

double nmeaLatitude(std::string_view field, std::string_view hemisphere) {
    return coordinate(field, 2, beginsWith(hemisphere, 'S'));
}

double nmeaLongitude(std::string_view field, std::string_view hemisphere) {
    return coordinate(field, 3, beginsWith(hemisphere, 'W'));
}

NmeaTimeOfDay nmeaTimeOfDay(std::string_view field) {
    return {nmeaInt(part(field, 0, 2)), nmeaInt(part(field, 2, 2)), nmeaDouble(from(field, 4))};
}

FileTime nmeaTime(std::string_view field) {
    const NmeaTimeOfDay time = nmeaTimeOfDay(field);
    const bool sane = std::abs(time.seconds) < kMaxSeconds;
    const FileTime seconds = sane ? static_cast<FileTime>(time.seconds) : 0;
    return (seconds + (time.minutes + time.hours * 60) * 60) * kFileTimePerSecond;
}

FileTime NmeaDates::toTime(std::string_view field) {
    if (field.empty()) {
        return 0;
    }
    // Six digits and their number stand for each other, so the number tells dates apart. Garbled
    // fields do not: they are converted each time, so that none can pass for a good one later.
    const bool wellFormed = isSixDigits(field);
    const std::int32_t key = nmeaInt(field);
    if (wellFormed && key == m_key) {
        return m_result;
    }
    const FileTime result =
        m_convert(nmeaInt(from(field, 4)), nmeaInt(part(field, 2, 2)), nmeaInt(part(field, 0, 2)));
    if (wellFormed) {
        m_key = key;
        m_result = result;
    }
    return result;
}

} // namespace raincast
