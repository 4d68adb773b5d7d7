// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_pace.h"

#include "position/nmea/nmea_fields.h"
#include "position/nmea/nmea_reader.h"

#include <algorithm>
#include <array>

namespace raincast {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kDay = std::chrono::hours{24};
constexpr milliseconds kBackwardJitter{2000};

// The time of day of an RMC or GGA sentence that is not damaged.
std::optional<milliseconds> timeOf(std::string_view line) {
    const std::size_t start = line.rfind('$');
    if (start == std::string_view::npos) {
        return std::nullopt;
    }
    const auto text = checkedNmeaText(line.substr(start));
    if (!text || text->size() < 6) {
        return std::nullopt;
    }
    const std::string_view name = text->substr(2, 4);
    std::array<std::string_view, 2> fields;
    splitNmeaFields(*text, fields);
    if ((name != "RMC," && name != "GGA,") || fields[1].size() < 6) {
        return std::nullopt;
    }
    const NmeaTimeOfDay time = nmeaTimeOfDay(fields[1]);
    const double seconds = (time.hours * 60 + time.minutes) * 60.0 + time.seconds;
    const double thousandths = seconds * 1000 + 0.5;
    // Written so that not-a-number fails as well.
    if (!(thousandths >= 0 && thousandths < static_cast<double>(kDay.count()))) {
        return std::nullopt;
    }
    return milliseconds{static_cast<milliseconds::rep>(thousandths)};
}

} // namespace

milliseconds NmeaPace::waitBefore(std::string_view line) {
    const auto time = m_rate > 0 ? timeOf(line) : std::nullopt;
    if (!time) {
        return milliseconds{0};
    }
    // The way from one time of day to another is the shorter one around the clock.
    milliseconds gap = *time - m_latest.value_or(*time);
    if (gap > kDay / 2) {
        gap -= kDay;
    } else if (gap < -kDay / 2) {
        gap += kDay;
    }
    if (m_latest && gap < milliseconds{0} && gap >= -kBackwardJitter) {
        return milliseconds{0};
    }
    m_latest = time;
    const auto wait = std::clamp(gap, milliseconds{0}, kLongestGap);
    return milliseconds{static_cast<milliseconds::rep>(static_cast<double>(wait.count()) / m_rate)};
}

} // namespace raincast
