// SPDX-License-Identifier: MIT
#include "player/frame_time.h"

#include "core/text.h"

#include <ctime>

namespace raincast {

namespace {

/// The local clock's zone at a time, as the system writes it: "PDT", "+03".
QString localZone(FileTime time) {
    const auto seconds = static_cast<std::time_t>((time - kUnixEpoch) / kFileTimePerSecond);
    std::tm local{};
    localtime_r(&seconds, &local);
    return QString::fromUtf8(local.tm_zone);
}

QString hoursText(FileTime hours) {
    return Text::counted("%n hours", "%n hour", hours);
}

QString minutesText(FileTime minutes) {
    return Text::counted("%n minutes", "%n minute", minutes);
}

} // namespace

QString frameTimeText(FileTime taken, bool utc) {
    if (taken <= 0) {
        return {};
    }
    const CalendarTime time = utc ? toCalendar(taken) : toLocalCalendar(taken);
    return Text::date(time) + u' ' + Text::clock(time) + u' ' +
           (utc ? QStringLiteral("UTC") : localZone(taken));
}

QString frameAgeText(FileTime taken, FileTime now) {
    if (taken <= 0 || taken > now) {
        return {};
    }
    const FileTime minutes = (now - taken) / kFileTimePerMinute;
    const FileTime hours = minutes / 60;
    if (minutes == 0) {
        return Text::tr("just now");
    }
    QString text;
    if (hours >= 48) {
        text = Text::counted("%n days", "%n day", hours / 24);
    } else if (hours > 0 && minutes % 60 > 0) {
        text = hoursText(hours) + u' ' + minutesText(minutes % 60);
    } else {
        text = hours > 0 ? hoursText(hours) : minutesText(minutes);
    }
    return Text::tr("%1 ago").arg(text);
}

} // namespace raincast
