// SPDX-License-Identifier: MIT
#include "player/frame_time.h"

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

QString counted(FileTime number, const char* unit) {
    return QStringLiteral("%1 %2%3").arg(number).arg(
        QLatin1String(unit), QLatin1String(number == 1 ? "" : "s")
    );
}

} // namespace

QString frameTimeText(FileTime taken, bool utc) {
    if (taken <= 0) {
        return {};
    }
    const CalendarTime time = utc ? toCalendar(taken) : toLocalCalendar(taken);
    const QString text = QString::asprintf(
        "%04d-%02d-%02d %d:%02d ", time.year, time.month, time.day, time.hour, time.minute
    );
    return text + (utc ? QStringLiteral("UTC") : localZone(taken));
}

QString frameAgeText(FileTime taken, FileTime now) {
    if (taken <= 0 || taken > now) {
        return {};
    }
    const FileTime minutes = (now - taken) / kFileTimePerMinute;
    const FileTime hours = minutes / 60;
    if (minutes == 0) {
        return QStringLiteral("just now");
    }
    QString text;
    if (hours >= 48) {
        text = counted(hours / 24, "day");
    } else if (hours > 0 && minutes % 60 > 0) {
        text = counted(hours, "hour") + u' ' + counted(minutes % 60, "minute");
    } else {
        text = hours > 0 ? counted(hours, "hour") : counted(minutes, "minute");
    }
    return text + QStringLiteral(" ago");
}

} // namespace raincast
