// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

class QFontMetrics;
class QPainter;
class QRect;

namespace raincast {

struct CDataGPSPosition;
struct NavigationData;

/// The way to the target as a line of at most so many pixels: "Harbour  3.2 Mi  045°  right 12°
/// XTE 0.05 Mi left", in the user's units. The last two are where the target lies from the
/// direction of travel, left out at a speed of at most 0.2 knots, which has none; and the distance
/// from the line to the target and the side of it that the user is on.
///
/// Without room the words get shorter, then the name; at last parts are left out from the end. A
/// distance is never cut.
[[nodiscard]] QString navigationLine(
    const NavigationData& navigation, const CDataGPSPosition& position, const QFontMetrics& metrics,
    int width
);

/// The lines of a map view for a position, from the top: the way to the target, null for none, then
/// the position; those that the user wants and that there is something to say in. None without a
/// fix.
[[nodiscard]] QStringList mapLines(
    const CDataGPSPosition& position, const NavigationData* navigation, const QFontMetrics& metrics,
    int width
);

/// Draws lines into a map view's rectangle, from the top left; what does not fit is cut.
void drawMapLines(QPainter& painter, const QRect& area, const QStringList& lines);

/// The room between text and the edges of a map view.
inline constexpr int kMapLinesMargin = 2;

} // namespace raincast
