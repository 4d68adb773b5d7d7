// SPDX-License-Identifier: MIT
#include "warnings/warning_words.h"

#include "core/text.h"
#include "palette/warning_kinds.h"
#include "player/loop_setting.h"

#include <QStringList>

#include <cmath>

namespace raincast {

namespace {

constexpr FileTime kHalfDay = 12 * 60 * kFileTimePerMinute;
constexpr QRgb kUnknownEvent = 0xFFC0C0C0;

QString clockTime(FileTime time, bool withDate) {
    const bool utc = LoopSetting::utc();
    const CalendarTime at = utc ? toCalendar(time) : toLocalCalendar(time);
    return (withDate ? Text::date(at) + u' ' : QString()) + Text::clock(at) +
           (utc ? QStringLiteral(" UTC") : QString());
}

double linear(double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

/// As the guidelines for accessible contents have it: 0 for black, 1 for white.
double luminance(const QColor& colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

// The contrast with white is 1.05 / (l + 0.05), that with black (l + 0.05) / 0.05.
QColor inkOn(const QColor& ground) {
    const double l = luminance(ground) + 0.05;
    return l * l > 1.05 * 0.05 ? Qt::black : Qt::white;
}

QString titleOf(const WarningText& warning) {
    return Text::of(warning.event.simplified());
}

} // namespace

QString endText(FileTime end, FileTime now) {
    if (end == 0) {
        return {};
    }
    const bool ended = end <= now;
    const bool isFar = std::abs(end - now) > kHalfDay;
    return (ended ? Text::tr("ended %1") : Text::tr("until %1")).arg(clockTime(end, isFar));
}

QString warnedText(const WarningText& warning, WarnedPlace place, FileTime now) {
    const QString whose =
        place == WarnedPlace::position ? Text::tr("your position") : Text::tr("your target");
    const QString text = Text::tr("%1 for %2 %3");
    return text.arg(titleOf(warning), whose, endText(warning.end, now)).trimmed();
}

QString wholeText(const WarningText& warning, FileTime now) {
    QStringList paragraphs = {
        QStringLiteral("%1 %2").arg(titleOf(warning), endText(warning.end, now)).trimmed()};
    for (const QString& part :
         {warning.headline, warning.text, warning.instruction, warning.office}) {
        if (!part.trimmed().isEmpty()) {
            paragraphs += part.trimmed();
        }
    }
    return paragraphs.join(QStringLiteral("\n\n"));
}

int dangerOf(const WarningText& warning) {
    const auto kind = warningKindOfName(warning.event);
    return kind ? static_cast<int>(*kind) : -1;
}

WarningColours coloursOf(const WarningText& warning) {
    const auto kind = warningKindOfName(warning.event);
    const QColor ground = QColor::fromRgb(kind ? colourOf(*kind) : kUnknownEvent);
    return {ground, inkOn(ground)};
}

} // namespace raincast
