// SPDX-License-Identifier: MIT
#include "server/home_page.h"

#include "maps/map_data.h"
#include "palette/nws_colours.h"
#include "radar/catalogue/antenna_positions.h"
#include "radar/catalogue/sites.h"
#include "server/home_page_text.h"

#include <QColor>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace raincast {

namespace {

/// The part of the page's map that shows a part of the earth: longitudes and latitudes are evenly
/// spaced, with the latitude's right proportion in its middle.
struct Inset {
    GeoBox box;
    double left; ///< of the map's 620 × 390 units
    double top;
    double unitsPerDegree; ///< of longitude
    double stretch;        ///< of latitude against longitude

    [[nodiscard]] double x(double longitude) const {
        return left + (longitude - box.west) * unitsPerDegree;
    }
    [[nodiscard]] double y(double latitude) const {
        return top + (box.north - latitude) * unitsPerDegree * stretch;
    }
};

// The contiguous states, then Alaska, Hawaii, Puerto Rico and Guam below them.
constexpr Inset kInsets[] = {
    {{24, -126, 50, -66}, 5, 5, 10.1, 1.25},           {{52, -170, 72, -130}, 5, 292, 2.6, 1.8},
    {{18.2, -160.8, 22.6, -154.4}, 130, 320, 9, 1.07}, {{17, -67.8, 19.2, -65}, 210, 345, 9, 1.05},
    {{12.4, 143.8, 14.4, 145.8}, 260, 345, 9, 1.03},
};

// Steps shorter than this many units are left out: they cannot be seen.
constexpr double kShortestStep = 1.2;

const Inset* insetOf(GeoPosition position) {
    for (const Inset& inset : kInsets) {
        if (inset.box.contains(position)) {
            return &inset;
        }
    }
    return nullptr;
}

QByteArray pathOf(const MapLine& line, const Inset& inset) {
    QByteArray path;
    double lastX = -1e9;
    double lastY = -1e9;
    for (std::size_t i = 0; i < line.points.size(); ++i) {
        const double x = inset.x(line.points[i].longitude);
        const double y = inset.y(line.points[i].latitude);
        const bool isLast = i + 1 == line.points.size();
        if (std::hypot(x - lastX, y - lastY) >= kShortestStep || (isLast && !path.isEmpty())) {
            path += path.isEmpty() ? 'M' : 'L';
            path += QByteArray::number(x, 'f', 1) + ' ' + QByteArray::number(y, 'f', 1);
            lastX = x;
            lastY = y;
        }
    }
    return path;
}

QByteArray statePaths(const MapData& maps) {
    QByteArray paths;
    for (const Inset& inset : kInsets) {
        for (const MapLine& line : maps.borders(inset.box)) {
            const GeoBox box = boxAround(line.points);
            // Small islands, but not short pieces of a border.
            const bool isSpeck = line.points.front() == line.points.back() &&
                                 (box.east - box.west) * inset.unitsPerDegree < 2 &&
                                 (box.north - box.south) * inset.unitsPerDegree < 2;
            const bool isInside = inset.box.contains({box.south, box.west}) &&
                                  inset.box.contains({box.north, box.east});
            if (line.rank == 0 && !isSpeck && isInside) {
                paths += pathOf(line, inset);
            }
        }
    }
    return paths;
}

QByteArray nameOf(std::string_view id) {
    const RadarSite* const site =
        findRadarSite(QString::fromLatin1(id.data(), static_cast<qsizetype>(id.size())));
    return site == nullptr ? QByteArray() : site->nameText().toUtf8();
}

QByteArray idOf(const AntennaPosition& antenna) {
    return {antenna.id.data(), static_cast<qsizetype>(antenna.id.size())};
}

QByteArray dots() {
    QByteArray result;
    for (const AntennaPosition& antenna : antennaPositions()) {
        const Inset* const inset = insetOf({antenna.latitude, antenna.longitude});
        if (inset != nullptr) {
            const QByteArray id = idOf(antenna);
            result += "<a data-site=\"" + id + "\" href=\"ridge/RadarImg/N0R/" + id +
                      "/\"><circle r=\"4\" cx=\"" +
                      QByteArray::number(inset->x(antenna.longitude), 'f', 1) + "\" cy=\"" +
                      QByteArray::number(inset->y(antenna.latitude), 'f', 1) + "\"><title>" + id +
                      ' ' + nameOf(antenna.id) + "</title></circle></a>";
        }
    }
    return result;
}

QByteArray list() {
    QByteArray result;
    for (const RadarSite& site : radarSites()) {
        const QByteArray id = site.idText().toUtf8();
        result += "<li><a data-site=\"" + id + "\" href=\"ridge/RadarImg/N0R/" + id + "/\">" +
                  site.nameText().toUtf8() + "</a></li>";
    }
    return result;
}

QByteArray siteNames() {
    QJsonObject names;
    for (const RadarSite& site : radarSites()) {
        names[site.idText().toString()] = site.nameText().toString();
    }
    return QJsonDocument(names).toJson(QJsonDocument::Compact);
}

/// {"N0R": {"unit": "dBZ", "levels": [["#04e9e7", "5"], …]}, …}
QByteArray scales() {
    QJsonObject scales;
    for (const Product product : kAllProducts) {
        const Quantity quantity = quantityOf(product);
        QJsonArray levels;
        for (std::size_t level = 1; level < nwsColours(quantity).size(); ++level) {
            levels += QJsonArray{
                QColor(nwsColours(quantity)[level]).name(),
                QString::fromLatin1(nwsLevelName(product, level))};
        }
        const std::string_view code = codeOf(product);
        scales[QString::fromLatin1(code.data(), static_cast<qsizetype>(code.size()))] = QJsonObject{
            {QStringLiteral("unit"), QString::fromLatin1(nwsUnit(quantity))},
            {QStringLiteral("levels"), levels}};
    }
    return QJsonDocument(scales).toJson(QJsonDocument::Compact);
}

} // namespace

QByteArray
homePage(const MapData& maps, SourceKind source, const std::optional<Replay>& replay, int detail) {
    return QByteArray(kHomePageText)
        .replace(
            "@NOTE@", source == SourceKind::sample
                          ? "<p class=\"note\">Sample weather: nothing here has happened.</p>"
                      : replay ? "<p class=\"note\" id=\"replay\">A replay.</p>"
                               : ""
        )
        .replace(
            "@CREDIT@", source == SourceKind::live ? "Radar: NOAA/NWS NEXRAD via Unidata (AWS Open "
                                                     "Data), NOAA/NWS. Warnings: NOAA/NWS, "
                                                     "Iowa Environmental Mesonet."
                                                   : ""
        )
        .replace("@SPEED@", QByteArray::number(replay ? replay->speed : 1))
        .replace("@DETAIL@", detail > 1 ? "2" : "1")
        .replace("@STATES@", statePaths(maps))
        .replace("@DOTS@", dots())
        .replace("@LIST@", list())
        .replace("@SITES@", siteNames())
        .replace("@SCALES@", scales());
}

} // namespace raincast
