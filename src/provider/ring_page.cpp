// SPDX-License-Identifier: MIT
#include "provider/ring_page.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <map>

namespace raincast {

namespace {

FileTime timeOf(QDateTime time) {
    time.setTimeSpec(Qt::UTC);
    return time.isValid() && time.toSecsSinceEpoch() >= 0
               ? kUnixEpoch + time.toSecsSinceEpoch() * kFileTimePerSecond
               : 0;
}

FileTime timeIn(const QString& text, const char* format) {
    return timeOf(QLocale::c().toDateTime(text.simplified(), QLatin1String(format)));
}

/// "Nov 21 17:49", which is of the last twelve months.
FileTime timeWithoutYear(const QString& text, FileTime now) {
    const int year = toCalendar(now).year;
    constexpr FileTime kDay = 24 * 60 * kFileTimePerMinute;
    for (const int candidate : {year, year - 1}) {
        const FileTime time = timeIn(QString::number(candidate) + u' ' + text, "yyyy MMM d HH:mm");
        if (time != 0 && time < now + kDay) {
            return time;
        }
    }
    return 0;
}

using Times = std::map<QByteArray, FileTime>;

void readRows(const QString& page, Times& times) {
    static const QRegularExpression row(QString::fromLatin1(
        R"re((sn\.\d{4})"?>[^<]{0,40}</a>(?:\s|&nbsp;|</?td[^>]{0,80}>){0,20})re"
        R"((?:(\d{2}-[A-Za-z]{3}-\d{4} \d{2}:\d{2})|(\d{4}-\d{2}-\d{2} \d{2}:\d{2})))"
    ));
    for (const auto& match : row.globalMatch(page)) {
        times[match.captured(1).toLatin1()] = match.capturedLength(2) > 0
                                                  ? timeIn(match.captured(2), "dd-MMM-yyyy HH:mm")
                                                  : timeIn(match.captured(3), "yyyy-MM-dd HH:mm");
    }
}

void readLines(const QString& page, FileTime now, Times& times) {
    static const QRegularExpression line(
        QString::fromLatin1(R"(([A-Z][a-z]{2}) +(\d{1,2}) +(?:(\d{2}:\d{2})|(\d{4})) +(sn\.\d{4}))")
    );
    for (const auto& match : line.globalMatch(page)) {
        const QString day = match.captured(1) + u' ' + match.captured(2) + u' ';
        times[match.captured(5).toLatin1()] = match.capturedLength(3) > 0
                                                  ? timeWithoutYear(day + match.captured(3), now)
                                                  : timeIn(day + match.captured(4), "MMM d yyyy");
    }
}

} // namespace

std::vector<RingEntry> readRingPage(const QByteArray& bytes, FileTime now) {
    static const QRegularExpression name(QString::fromLatin1(R"(\bsn\.\d{4}\b)"));
    const QString page = QString::fromLatin1(bytes);
    Times times;
    for (const auto& match : name.globalMatch(page)) {
        times[match.captured().toLatin1()] = 0;
    }
    readRows(page, times);
    readLines(page, now, times);
    std::vector<RingEntry> entries;
    for (const auto& [file, time] : times) {
        entries.push_back({file, time});
    }
    std::stable_sort(entries.begin(), entries.end(), [](const RingEntry& a, const RingEntry& b) {
        return a.modified > b.modified;
    });
    return entries;
}

} // namespace raincast
