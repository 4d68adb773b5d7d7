// SPDX-License-Identifier: MIT
#include "map/mark_list.h"

#include "core/text.h"
#include "geo/way.h"
#include "map/mark_names.h"
#include "map/overlay_mark.h"
#include "units/units.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace raincast {

QString MarkRow::wayText() const {
    if (!mark->isPlaced()) {
        return Text::tr("not on earth");
    }
    return CUnits::global().distanceText(distanceMetres) + QStringLiteral("  ") +
           bearingText(bearingDegrees);
}

std::vector<MarkRow>
listMarks(const std::list<COverlayMark>& marks, const std::optional<GeoPosition>& from) {
    std::vector<MarkRow> rows;
    rows.reserve(marks.size());
    for (const COverlayMark& mark : marks) {
        MarkRow row;
        row.mark = &mark;
        if (!mark.isPlaced()) {
            row.distanceMetres = std::numeric_limits<double>::infinity();
        } else if (from) {
            const LocalOffset way = shortWay(mark.position(), *from);
            const auto east = static_cast<float>(way.eastMetres);
            const auto north = static_cast<float>(way.northMetres);
            row.distanceMetres = std::hypot(east, north);
            row.bearingDegrees = bearingBack(east, north);
        }
        rows.push_back(row);
    }
    if (from) {
        std::stable_sort(rows.begin(), rows.end(), [](const MarkRow& one, const MarkRow& other) {
            return one.distanceMetres < other.distanceMetres;
        });
    }
    return rows;
}

} // namespace raincast
