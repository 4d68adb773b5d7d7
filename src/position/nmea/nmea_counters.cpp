// SPDX-License-Identifier: MIT
#include "position/nmea/nmea_counters.h"

#include "core/text.h"

#include <QStringList>

namespace raincast {

namespace {

struct Row {
    std::uint64_t NmeaCounters::*count;
    const char* label;
};

constexpr Row kSentenceRows[] = {
    {&NmeaCounters::taken, Text::marked("%1 taken")},
    {&NmeaCounters::otherKinds, Text::marked("%1 of other kinds")},
    {&NmeaCounters::proprietary, Text::marked("%1 proprietary")},
    {&NmeaCounters::encapsulated, Text::marked("%1 encapsulated")},
    {&NmeaCounters::wrongChecksum, Text::marked("%1 with a wrong checksum")},
    {&NmeaCounters::malformed, Text::marked("%1 malformed")},
    {&NmeaCounters::tooLong, Text::marked("%1 too long")},
    {&NmeaCounters::garbled, Text::marked("%1 garbled")},
};
constexpr Row kOtherRows[] = {
    {&NmeaCounters::jsonLines, Text::marked("%1 lines of JSON")},
    {&NmeaCounters::junkBytes, Text::marked("%1 bytes of junk")},
};

} // namespace

std::uint64_t NmeaCounters::sentences() const {
    std::uint64_t sum = 0;
    for (const Row& row : kSentenceRows) {
        sum += this->*row.count;
    }
    return sum;
}

std::string NmeaCounters::text() const {
    QStringList parts;
    const auto append = [&](const Row& row) {
        if (this->*row.count != 0) {
            parts += Text::of(row.label).arg(this->*row.count);
        }
    };
    for (const Row& row : kSentenceRows) {
        append(row);
    }
    for (const Row& row : kOtherRows) {
        append(row);
    }
    const QString read = Text::tr("read %1 bytes").arg(bytes);
    const QString what = parts.join(QStringLiteral(", "));
    return (what.isEmpty() ? read : read + QStringLiteral(": ") + what).toStdString();
}

} // namespace raincast
