// SPDX-License-Identifier: MIT
#include "weather/image_age.h"

#include <algorithm>
#include <iterator>

namespace raincast {

namespace {

constexpr FileTime kOld = 20 * kFileTimePerMinute;
constexpr FileTime kHour = 60 * kFileTimePerMinute;
constexpr FileTime kDay = 24 * kHour;

/// The text uses the largest unit of which the age has at least `from`.
struct Unit {
    FileTime length;
    FileTime from;
    const char* one;
    const char* several;
};
constexpr Unit kUnits[] = {
    {365 * kDay, 365 * kDay, "year", "years"},
    {kDay, 2 * kDay, "day", "days"},
    {kHour, 2 * kHour, "hour", "hours"},
    {kFileTimePerMinute, 0, "minute", "minutes"},
};

} // namespace

ImageAge imageAge(FileTime taken, FileTime now) {
    const FileTime age = now - taken;
    if (taken == 0 || age <= kOld) {
        return {};
    }
    const auto* unit = std::find_if(std::begin(kUnits), std::end(kUnits), [age](const Unit& row) {
        return age >= row.from;
    });
    const qint64 number = age / unit->length;
    const QString text = QStringLiteral("Image is %1 %2 old")
                             .arg(number)
                             .arg(QLatin1String(number == 1 ? unit->one : unit->several));
    return {text, age > kHour};
}

} // namespace raincast
