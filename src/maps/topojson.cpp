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

/// Positions as steps from the one before, in units that the transform explains:
/// "transform":{"scale":[0.0036,0.00086],"translate":[-179.1,-14.6]},
/// "arcs":[[[16791,57698],[-11,27]]]
class Steps {
public:
    explicit Steps(const QJsonObject& topology) {
        const QJsonObject transform = topology[u"transform"].toObject();
        m_quantised = !transform.isEmpty();
        if (m_quantised) {
            const QJsonArray scale = transform[u"scale"].toArray();
            const QJsonArray translate = transform[u"translate"].toArray();
            m_scale = {scale.at(1).toDouble(), scale.at(0).toDouble()};
            m_translate = {translate.at(1).toDouble(), translate.at(0).toDouble()};
        }
    }

    [[nodiscard]] std::vector<GeoPosition> decode(const QJsonArray& arc) const {
        std::vector<GeoPosition> points;
        double x = 0;
        double y = 0;
        for (const QJsonValue& step : arc) {
            x = step[0].toDouble() + (m_quantised ? x : 0);
            y = step[1].toDouble() + (m_quantised ? y : 0);
            points.push_back(
                {y * m_scale.latitude + m_translate.latitude,
                 x * m_scale.longitude + m_translate.longitude}
            );
        }
        return points;
    }

private:
    bool m_quantised;
    GeoPosition m_scale{1, 1};
    GeoPosition m_translate;
};

} // namespace

std::vector<MapLine> readTopology(const QByteArray& bytes, const QString& major) {
    const QJsonObject topology = QJsonDocument::fromJson(bytes).object();
    const QJsonArray arcs = topology[u"arcs"].toArray();
    const auto isMajor =
        arcsOf(topology[u"objects"][major].toObject(), static_cast<std::size_t>(arcs.size()));
    const Steps steps(topology);
    std::vector<MapLine> lines;
    for (qsizetype i = 0; i < arcs.size(); ++i) {
        MapLine line{isMajor[static_cast<std::size_t>(i)] ? 0 : 1, steps.decode(arcs[i].toArray())};
        if (line.points.size() > 1) {
            lines.push_back(std::move(line));
        }
    }
    return lines;
}

} // namespace raincast
