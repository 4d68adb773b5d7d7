// SPDX-License-Identifier: MIT
#include "tree/warnings_text.h"

#include "core/utc_date_time.h"
#include "palette/warning_kinds.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace raincast {

namespace {

/// The nearest four decimals: ten metres.
double rounded(double degrees) {
    constexpr double kSteps = 10'000;
    return std::round(degrees * kSteps) / kSteps;
}

QJsonValue textOf(FileTime time) {
    return time == 0 ? QJsonValue() : utcDateTime(time).toString(Qt::ISODate);
}

QJsonArray polygonsOf(const WeatherWarning& warning) {
    QJsonArray polygons;
    for (const WeatherWarning::Polygon& polygon : warning.polygons) {
        QJsonArray rings;
        for (const WeatherWarning::Ring& ring : polygon) {
            QJsonArray corners;
            for (const WeatherWarning::Corner& corner : ring) {
                corners += QJsonArray{rounded(corner.latitude), rounded(corner.longitude)};
            }
            rings += corners;
        }
        polygons += rings;
    }
    return polygons;
}

QJsonObject objectOf(const WeatherWarning& warning) {
    return {
        {QStringLiteral("id"), warning.id},
        {QStringLiteral("event"), nameOf(warning.kind)},
        {QStringLiteral("office"), warning.office},
        {QStringLiteral("headline"), warning.headline},
        {QStringLiteral("text"), warning.text},
        {QStringLiteral("instruction"), warning.instruction},
        {QStringLiteral("begin"), textOf(warning.begin)},
        {QStringLiteral("end"), textOf(warning.end)},
        {QStringLiteral("polygons"), polygonsOf(warning)},
    };
}

} // namespace

bool reachesInto(const ImageGeometry& image, const WeatherWarning& warning) {
    const double south = image.latitudeOfRow(kFrameHeight);
    const double north = image.latitudeOfRow(0);
    const double west = image.longitudeOfColumn(0);
    const double east = image.longitudeOfColumn(kFrameWidth);
    const auto isNear = [&](const WeatherWarning::Polygon& polygon) {
        if (polygon.empty() || polygon.front().empty()) {
            return false;
        }
        const WeatherWarning::Ring& ring = polygon.front();
        const auto [low, high] =
            std::minmax_element(ring.begin(), ring.end(), [](auto& a, auto& b) {
                return a.latitude < b.latitude;
            });
        const auto [left, right] =
            std::minmax_element(ring.begin(), ring.end(), [](auto& a, auto& b) {
                return a.longitude < b.longitude;
            });
        return low->latitude <= north && high->latitude >= south && left->longitude <= east &&
               right->longitude >= west;
    };
    return std::any_of(warning.polygons.begin(), warning.polygons.end(), isNear);
}

QByteArray warningsText(const ImageGeometry& image, const WeatherWarnings& warnings) {
    std::vector<const WeatherWarning*> shown;
    for (const WeatherWarning& warning : warnings.warnings) {
        if (reachesInto(image, warning)) {
            shown.push_back(&warning);
        }
    }
    std::stable_sort(shown.begin(), shown.end(), [](const auto* a, const auto* b) {
        return a->kind > b->kind;
    });
    QJsonArray list;
    for (const WeatherWarning* const warning : shown) {
        list += objectOf(*warning);
    }
    return QJsonDocument(QJsonObject{
                             {QStringLiteral("sample"), warnings.isSample},
                             {QStringLiteral("warnings"), list}}
    ).toJson(QJsonDocument::Compact);
}

} // namespace raincast
