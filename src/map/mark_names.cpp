// SPDX-License-Identifier: MIT
#include "map/mark_names.h"

#include "core/text.h"
#include "map/overlay_mark.h"
#include "window/one_line.h"

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

// Higher numbers are somebody's own and not counted on.
constexpr int kMostNumber = 999'999;

QString stem() {
    return Text::tr("Mark %1").section(u'%', 0, 0);
}

int numberIn(const QString& name) {
    const int number = name.startsWith(stem()) ? name.mid(stem().size()).toInt() : 0;
    return number <= kMostNumber ? number : 0;
}

} // namespace

QString shownMarkName(const QString& name) {
    const QString line = oneLine(name);
    return line.trimmed().isEmpty() ? Text::tr("Unnamed") : line;
}

QString proposedMarkName(const std::list<COverlayMark>& marks) {
    int highest = 0;
    for (const COverlayMark& mark : marks) {
        highest = std::max(highest, numberIn(mark.name));
    }
    return stem() + QString::number(highest + 1);
}

QString bearingText(double degrees) {
    const int whole = static_cast<int>(std::lround(degrees)) % 360;
    return QStringLiteral("%1").arg(whole, 3, 10, QChar(u'0')) + QChar(0x00B0);
}

} // namespace raincast
