// SPDX-License-Identifier: MIT
#include "maps/topojson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <climits>

namespace raincast {

namespace {

/// Collects the arc numbers of a geometry's nested lists. A number below zero is an arc taken
/// backwards: its complement.
void collectArcs(const QJsonValue& arcs, std::vector<bool>& used) {
    if (arcs.isDouble()) {
        const int number = arcs.toInt(INT_MAX);
        const auto index = static_cast<std::size_t>(number < 0 ? ~number : number);
        if (index < used.size()) {
            used[index] = true;
        }
        return;
    }
    for (const QJsonValue& part : arcs.toArray()) {
        collectArcs(part, used);
    }
}

std::vector<bool> arcsOf(const QJsonObject& object, std::size_t arcs) {
    std::vector<bool> used(arcs);
    collectArcs(object[u"arcs"], used);
    for (const QJsonValue& geometry : object[u"geometries"].toArray()) {
        collectArcs(geometry[u"arcs"], used);
    }
    return used;
}

/// "transform":{"scale":[0.0036,0.00086],"translate":[-179.1,-14.6]}
std::optional<TopologyTransform> transformOf(const QJsonObject& topology) {
    const QJsonObject transform = topology[u"transform"].toObject();
    if (transform.isEmpty()) {
        return std::nullopt;
    }
    const QJsonArray scale = transform[u"scale"].toArray();
    const QJsonArray translate = transform[u"translate"].toArray();
    return TopologyTransform{
        {scale.at(1).toDouble(), scale.at(0).toDouble()},
        {translate.at(1).toDouble(), translate.at(0).toDouble()}};
}

/// Positions, or steps from the one before that a transform explains:
/// "arcs":[[[16791,57698],[-11,27]]]
std::vector<GeoPosition>
decode(const QJsonArray& arc, const std::optional<TopologyTransform>& transform) {
    const TopologyTransform used = transform.value_or(TopologyTransform{{1, 1}, {}});
    std::vector<GeoPosition> points;
    double x = 0;
    double y = 0;
    for (const QJsonValue& step : arc) {
        x = step[0].toDouble() + (transform ? x : 0);
        y = step[1].toDouble() + (transform ? y : 0);
        points.push_back(
            {y * used.step.latitude + used.begin.latitude,
             x * used.step.longitude + used.begin.longitude}
        );
    }
    return points;
}

} // namespace

std::vector<MapLine> readTopology(const QByteArray& bytes, const QString& major) {
    const QJsonObject topology = QJsonDocument::fromJson(bytes).object();
    const QJsonArray arcs = topology[u"arcs"].toArray();
    const auto isMajor =
        arcsOf(topology[u"objects"][major].toObject(), static_cast<std::size_t>(arcs.size()));
    const auto transform = transformOf(topology);
    std::vector<MapLine> lines;
    for (qsizetype i = 0; i < arcs.size(); ++i) {
        MapLine line{
            isMajor[static_cast<std::size_t>(i)] ? 0 : 1, decode(arcs[i].toArray(), transform)};
        if (line.points.size() > 1) {
            lines.push_back(std::move(line));
        }
    }
    return lines;
}

std::optional<TopologyTransform> transformOf(const QByteArray& bytes) {
    return transformOf(QJsonDocument::fromJson(bytes).object());
}

} // namespace raincast
