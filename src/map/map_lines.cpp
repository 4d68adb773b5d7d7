// SPDX-License-Identifier: MIT
#include "map/map_lines.h"

#include "core/text.h"
#include "map/map_lines_setting.h"
#include "map/mark_names.h"
#include "map/navigation_data.h"
#include "map/text_box.h"
#include "position/data_gps_position.h"
#include "units/units.h"

#include <QFontMetrics>
#include <QPainter>

#include <cmath>

namespace raincast {

namespace {

constexpr float kLeastSpeed = 0.2F; // knots: below, the course is chance
constexpr int kLeastNameCharacters = 4;
QString sideOf(float value) {
    return value < 0 ? Text::tr("left") : Text::tr("right");
}

QString shortSideOf(float value) {
    return value < 0 ? Text::tr("L", "left") : Text::tr("R", "right");
}

// The words of a line of usual length, and of one that must be short.
struct Words {
    QString (*of)(float value); ///< to which side
    const char* gap;            ///< between parts
};

constexpr Words kLongWords{sideOf, "  "};
constexpr Words kShortWords{shortSideOf, " "};

QString degreesText(float degrees) {
    return QString::number(degrees) + QChar(0x00B0);
}

QString turnText(float relativeBearing, const Words& words) {
    const float degrees = std::round(std::fabs(relativeBearing));
    return degrees == 0 ? Text::tr("ahead")
                        : words.of(relativeBearing) + u' ' + degreesText(degrees);
}

QString crossTrackText(float crossTrack, const Words& words) {
    const CUnits& units = CUnits::global();
    const QString distance = units.distanceText(std::fabs(crossTrack));
    const bool onTrack = distance == units.distanceText(0);
    return Text::tr("XTE %1").arg(distance) + (onTrack ? QString() : u' ' + words.of(crossTrack));
}

// The parts behind the name.
QStringList navigationParts(
    const NavigationData& navigation, const CDataGPSPosition& position, const Words& words
) {
    QStringList parts{
        CUnits::global().distanceText(navigation.distance), bearingText(navigation.bearing)};
    if (position.speed > kLeastSpeed) {
        parts += turnText(navigation.relativeBearing, words);
    }
    parts += crossTrackText(navigation.crossTrack, words);
    return parts;
}

} // namespace

QString navigationLine(
    const NavigationData& navigation, const CDataGPSPosition& position, const QFontMetrics& metrics,
    int width
) {
    const QString name = shownMarkName(navigation.targetName);
    const QString whole = (QStringList(name) + navigationParts(navigation, position, kLongWords))
                              .join(QLatin1String(kLongWords.gap));
    if (metrics.horizontalAdvance(whole) <= width) {
        return whole;
    }
    QStringList parts = navigationParts(navigation, position, kShortWords);
    const int least = kLeastNameCharacters * metrics.averageCharWidth();
    const auto behindName = [&parts] {
        const QLatin1String gap(kShortWords.gap);
        return gap + parts.join(gap);
    };
    const auto room = [&] { return width - metrics.horizontalAdvance(behindName()); };
    while (parts.size() > 1 && room() < least) {
        parts.removeLast();
    }
    return metrics.elidedText(name, Qt::ElideRight, std::max(room(), 0)) + behindName();
}

QStringList mapLines(
    const CDataGPSPosition& position, const NavigationData* navigation, const QFontMetrics& metrics,
    int width
) {
    QStringList lines;
    if (!position.valid()) {
        return lines;
    }
    if (navigation != nullptr && MapLinesSetting::shown(MapLinesSetting::navigation)) {
        lines += navigationLine(*navigation, position, metrics, width);
    }
    if (MapLinesSetting::shown(MapLinesSetting::position)) {
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
