// SPDX-License-Identifier: MIT
#include "display/map_lines.h"

#include "display/map_lines_setting.h"
#include "display/mark_names.h"
#include "display/text_box.h"
#include "gps/mark_manager.h"
#include "units/units.h"

#include <QFontMetrics>
#include <QPainter>

#include <cmath>

namespace raincast {

namespace {

constexpr float kLeastSpeed = 0.2F; // knots: below, the course is chance
constexpr int kLeastNameCharacters = 4;
const QString kGap = QStringLiteral("  ");

/// The words for one side and the other.
struct Sides {
    QString left;
    QString right;

    [[nodiscard]] const QString& of(float value) const { return value < 0 ? left : right; }
};

const Sides kLongSides{QStringLiteral("left"), QStringLiteral("right")};
const Sides kShortSides{QStringLiteral("L"), QStringLiteral("R")};

QString degreesText(float degrees) {
    return QString::number(degrees) + QChar(0x00B0);
}

QString turnText(float relativeBearing, const Sides& sides) {
    const float degrees = std::round(std::fabs(relativeBearing));
    return degrees == 0 ? QStringLiteral("ahead")
                        : sides.of(relativeBearing) + u' ' + degreesText(degrees);
}

QString crossTrackText(float crossTrack, const Sides& sides) {
    const CUnits& units = CUnits::global();
    const QString distance = units.distanceText(std::fabs(crossTrack));
    const bool onTrack = distance == units.distanceText(0);
    return QStringLiteral("XTE ") + distance + (onTrack ? QString() : u' ' + sides.of(crossTrack));
}

/// What there is to say behind the name.
QStringList navigationParts(
    const CDataNavigation& navigation, const CDataGPSPosition& position, const Sides& sides
) {
    QStringList parts{
        CUnits::global().distanceText(navigation.distance), bearingText(navigation.bearing)};
    if (position.speed > kLeastSpeed) {
        parts += turnText(navigation.relativeBearing, sides);
    }
    parts += crossTrackText(navigation.crossTrack, sides);
    return parts;
}

} // namespace

QString navigationLine(
    const CDataNavigation& navigation, const CDataGPSPosition& position,
    const QFontMetrics& metrics, int width
) {
    const QString name = shownMarkName(navigation.targetName);
    const auto line = [&](const Sides& sides) {
        return (name + kGap) + navigationParts(navigation, position, sides).join(kGap);
    };
    const QString whole = line(kLongSides);
    if (metrics.horizontalAdvance(whole) <= width) {
        return whole;
    }
    QStringList parts = navigationParts(navigation, position, kShortSides);
    const int least = kLeastNameCharacters * metrics.averageCharWidth();
    const auto room = [&] { return width - metrics.horizontalAdvance(kGap + parts.join(kGap)); };
    while (parts.size() > 1 && room() < least) {
        parts.removeLast();
    }
    const QString shortened = metrics.elidedText(name, Qt::ElideRight, std::max(room(), 0));
    return shortened + kGap + parts.join(kGap);
}

QStringList mapLines(const CDataGPSPosition& position, const QFontMetrics& metrics, int width) {
    QStringList lines;
    if (!position.valid()) {
        return lines;
    }
    const CDataNavigation* const navigation = CMarkManager::instance().navigation();
    if (navigation != nullptr && CMapLines::shown(CMapLines::navigation)) {
        lines += navigationLine(*navigation, position, metrics, width);
    }
    if (CMapLines::shown(CMapLines::position)) {
        lines += CUnits::global().formatPosition({position.latitude, position.longitude});
    }
    lines.removeAll(QString());
    return lines;
}

void drawMapLines(QPainter& painter, const QRect& area, const QStringList& lines) {
    painter.save();
    painter.setClipRect(area, Qt::IntersectClip);
    QPoint place = area.topLeft() + QPoint(kMapLinesMargin, 0);
    for (const QString& line : lines) {
        drawTextBox(painter, place, line);
        place.ry() += painter.fontMetrics().height();
    }
    painter.restore();
}

} // namespace raincast
