// SPDX-License-Identifier: MIT
#include "weather/image_age.h"

#include "core/text.h"

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
    QString (*text)(qint64 number);
};
const Unit kUnits[] = {
    {365 * kDay, 365 * kDay, [](qint64 n) { return Text::counted("%n years", "%n year", n); }},
    {kDay, 2 * kDay, [](qint64 n) { return Text::counted("%n days", "%n day", n); }},
    {kHour, 2 * kHour, [](qint64 n) { return Text::counted("%n hours", "%n hour", n); }},
    {kFileTimePerMinute, 0, [](qint64 n) { return Text::counted("%n minutes", "%n minute", n); }},
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
    return {Text::tr("Image is %1 old").arg(unit->text(age / unit->length)), age > kHour};
}

QString clockLine(Clock::Teller teller) {
    switch (teller) {
    case Clock::Teller::receiver:
        return Text::tr("This device's clock is wrong: the time is the receiver's");
    case Clock::Teller::nobody:
        return Text::tr("This device's clock is wrong: ages are not known");
    default:
        return {};
    }
}

} // namespace raincast
