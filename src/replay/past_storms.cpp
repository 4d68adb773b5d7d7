// SPDX-License-Identifier: MIT
#include "replay/past_storms.h"

#include "core/file_time.h"
#include "core/text.h"

#include <array>

namespace raincast {

namespace {

constexpr std::array kStorms = {
    PastStorm{u"2020-08-10T17:00Z", u"DVN", u"Derecho"},
    PastStorm{u"2021-08-29T15:30Z", u"LIX", u"Ida"},
    PastStorm{u"2021-12-11T03:00Z", u"PAH", u"Mayfield"},
    PastStorm{u"2022-09-28T18:30Z", u"TBW", u"Ian"},
    PastStorm{u"2023-03-25T00:30Z", u"DGX", u"Rolling Fork"},
};

} // namespace

Replay PastStorm::replay() const {
    return *readReplay(QString::fromUtf16(begin));
}

QString PastStorm::row() const {
    return QStringLiteral("%1 %2 %3")
        .arg(QStringView(begin).left(10), QStringView(siteId), QStringView(name));
}

std::span<const PastStorm> pastStorms() {
    return kStorms;
}

QString replayLine() {
    const auto* const clock = dynamic_cast<const ReplayClock*>(&Clock::current());
    if (clock == nullptr) {
        return {};
    }
    const CalendarTime now = toCalendar(clock->now());
    const int speed = clock->replay().speed;
    const QString time = Text::date(now) + u' ' + Text::clock(now, Text::Hours::twoDigits);
    return speed > 1 ? Text::tr("Replay of %1 UTC, %2 times as fast").arg(time).arg(speed)
                     : Text::tr("Replay of %1 UTC").arg(time);
}

} // namespace raincast
