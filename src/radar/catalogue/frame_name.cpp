// SPDX-License-Identifier: MIT
#include "radar/catalogue/frame_name.h"

#include <algorithm>

namespace raincast {

namespace {

// Every frame's name has this length: BMX_20070615_1830_N0R.gif
constexpr qsizetype kNameLength = 25;
constexpr FileTime kMostAhead = 24 * 60 * kFileTimePerMinute;

bool hasFrameForm(const QString& name) {
    return name.size() == kNameLength && name[3] == u'_' && name[4] == u'2';
}

/// The time in a name of a frame's form; none when its digits are not a time.
std::optional<FileTime> timeOf(const QString& name) {
    const QStringView stamp = QStringView(name).sliced(4, 13); // 20070615_1830
    const auto isDigit = [](QChar c) { return u'0' <= c && c <= u'9'; };
    const bool digits = std::count_if(stamp.begin(), stamp.end(), isDigit) == stamp.size() - 1;
    if (stamp[8] != u'_' || !digits) {
        return std::nullopt;
    }
    const auto field = [stamp](qsizetype first, qsizetype size) {
        return stamp.sliced(first, size).toInt();
    };
    const FileTime time =
        fromCalendar({field(0, 4), field(4, 2), field(6, 2), field(9, 2), field(11, 2)});
    return time != 0 ? std::optional(time) : std::nullopt;
}

} // namespace

QString listingDirectory(const QString& siteId, const QString& product) {
    return QStringLiteral("/ridge/RadarImg/%1/%2/").arg(product, siteId);
}

QString frameFileName(const QString& siteId, FileTime time, const QString& product) {
    const CalendarTime utc = toCalendar(time);
    const QString stamp = QString::asprintf(
        "_%4d%02d%02d_%02d%02d_", utc.year, utc.month, utc.day, utc.hour, utc.minute
    );
    return siteId + stamp + product + QStringLiteral(".gif");
}

QString warningsFileName(const QString& siteId) {
    return siteId + QStringLiteral("_Warnings_0.gif");
}

QString warningTextsFileName(const QString& siteId) {
    return siteId + QStringLiteral("_Warnings_0.json");
}

QString warningsPath(const QString& siteId, const QString& range) {
    return QStringLiteral("/ridge/Warnings/%1/%2").arg(range, warningsFileName(siteId));
}

QString warningTextsPath(const QString& siteId, const QString& range) {
    return QStringLiteral("/ridge/Warnings/%1/%2").arg(range, warningTextsFileName(siteId));
}

std::optional<FileTime> frameTime(const QString& fileName) {
    return hasFrameForm(fileName) ? timeOf(fileName) : std::nullopt;
}

std::optional<FileTime> newestFrameTime(const std::set<QString>& listing) {
    const auto newest = std::find_if(listing.rbegin(), listing.rend(), hasFrameForm);
    return newest == listing.rend() ? std::nullopt : timeOf(*newest);
}

void removeFramesAhead(std::set<QString>& listing, FileTime now) {
    std::erase_if(listing, [now](const QString& name) {
        return frameTime(name).value_or(0) > now + kMostAhead;
    });
}

QString clockText(FileTime time) {
    const CalendarTime local = toLocalCalendar(time);
    const int hour = local.hour > 12 ? local.hour - 12 : local.hour;
    return QString::asprintf("%d:%02d", hour, local.minute);
}

} // namespace raincast
