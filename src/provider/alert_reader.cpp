// SPDX-License-Identifier: MIT
#include "provider/alert_reader.h"

#include "palette/warning_kinds.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <algorithm>
#include <map>
#include <optional>
#include <set>

namespace raincast {

namespace {

// A season's worst day has some hundreds, of some dozen corners each.
constexpr qsizetype kMostAlerts = 5000;
constexpr qsizetype kMostCorners = 5000;
constexpr qsizetype kMostText = 16'000;

QString textIn(const QJsonObject& object, const char* name) {
    return object.value(QLatin1String(name)).toString().left(kMostText);
}

/// "2025-06-19T18:40:00-06:00"
FileTime timeIn(const QJsonObject& object, const char* name) {
    const QDateTime time = QDateTime::fromString(textIn(object, name), Qt::ISODate).toUTC();
    return time.isValid() && time.toSecsSinceEpoch() > 0
               ? kUnixEpoch + time.toSecsSinceEpoch() * kFileTimePerSecond
               : 0;
}

FileTime firstTimeIn(const QJsonObject& object, std::initializer_list<const char*> names) {
    for (const char* const name : names) {
        if (const FileTime time = timeIn(object, name); time != 0) {
            return time;
        }
    }
    return 0;
}

/// Longitude, then latitude.
std::optional<WeatherWarning::Corner> readCorner(const QJsonValue& value) {
    const QJsonArray pair = value.toArray();
    if (pair.size() < 2 || !pair[0].isDouble() || !pair[1].isDouble()) {
        return std::nullopt;
    }
    const WeatherWarning::Corner corner{pair[1].toDouble(), pair[0].toDouble()};
    const bool isOnEarth = std::abs(corner.latitude) <= 90 && std::abs(corner.longitude) <= 360;
    return isOnEarth ? std::optional(corner) : std::nullopt;
}

WeatherWarning::Ring readRing(const QJsonValue& value) {
    WeatherWarning::Ring ring;
    const QJsonArray corners = value.toArray();
    for (const QJsonValue& one : corners) {
        const auto corner = readCorner(one);
        if (!corner || static_cast<qsizetype>(ring.size()) >= kMostCorners) {
            return {};
        }
        ring.push_back(*corner);
    }
    return ring;
}

void addPolygon(const QJsonValue& value, std::vector<WeatherWarning::Polygon>& polygons) {
    WeatherWarning::Polygon polygon;
    const QJsonArray rings = value.toArray();
    for (const QJsonValue& one : rings) {
        WeatherWarning::Ring ring = readRing(one);
        if (ring.size() >= 3) {
            polygon.push_back(std::move(ring));
        } else if (polygon.empty()) {
            return; // holes without an outline
        }
    }
    if (!polygon.empty()) {
        polygons.push_back(std::move(polygon));
    }
}

std::vector<WeatherWarning::Polygon> polygonsIn(const QJsonObject& feature) {
    const QJsonObject geometry = feature.value(QLatin1String("geometry")).toObject();
    const QJsonValue coordinates = geometry.value(QLatin1String("coordinates"));
    const QString type = textIn(geometry, "type");
    std::vector<WeatherWarning::Polygon> polygons;
    if (type == u"Polygon") {
        addPolygon(coordinates, polygons);
    } else if (type == u"MultiPolygon") {
        const QJsonArray all = coordinates.toArray();
        for (const QJsonValue& one : all) {
            addPolygon(one, polygons);
        }
    }
    return polygons;
}

/// The first text of a list among the parameters.
QString parameterIn(const QJsonObject& properties, const char* name) {
    const QJsonObject parameters = properties.value(QLatin1String("parameters")).toObject();
    return parameters.value(QLatin1String(name)).toArray().at(0).toString();
}

/// /O.NEW.KBIS.TO.W.0002.250620T0040Z-250620T0115Z/
void readVtec(const QString& vtec, Alert& alert) {
    static const QRegularExpression form(
        QString::fromLatin1(R"(^/[A-Z]\.([A-Z]{3})\.[A-Z]([A-Z]{3}\.[A-Z]{2}\.[A-Z]\.\d{4})\.)")
    );
    const auto match = form.match(vtec);
    if (match.hasMatch()) {
        static const QStringList over = {
            QStringLiteral("CAN"), QStringLiteral("EXP"), QStringLiteral("UPG")};
        alert.event = match.captured(2);
        alert.isCancelled = over.contains(match.captured(1));
    }
}

QStringList referencesIn(const QJsonObject& properties) {
    QStringList ids;
    const QJsonArray references = properties.value(QLatin1String("references")).toArray();
    for (const QJsonValue& one : references) {
        const QString id = one.isString() ? one.toString() : textIn(one.toObject(), "identifier");
        if (!id.isEmpty()) {
            ids += id;
        }
    }
    return ids;
}

std::optional<Alert> readAlert(const QJsonObject& feature) {
    const QJsonObject properties = feature.value(QLatin1String("properties")).toObject();
    const auto kind = warningKindOfName(textIn(properties, "event"));
    const QString status = textIn(properties, "status");
    if (!kind || (!status.isEmpty() && status != u"Actual")) {
        return std::nullopt;
    }
    Alert alert;
    readVtec(parameterIn(properties, "VTEC"), alert);
    alert.isCancelled = alert.isCancelled || textIn(properties, "messageType") == u"Cancel";
    alert.id = textIn(properties, "id");
    alert.sent = timeIn(properties, "sent");
    alert.references = referencesIn(properties);
    WeatherWarning& warning = alert.warning;
    warning.kind = *kind;
    warning.id = alert.event.isEmpty() ? alert.id : alert.event;
    warning.office = textIn(properties, "senderName");
    warning.headline = textIn(properties, "headline");
    warning.text = textIn(properties, "description");
    warning.instruction = textIn(properties, "instruction");
    warning.begin = firstTimeIn(properties, {"onset", "effective", "sent"});
    warning.end = firstTimeIn(properties, {"ends", "expires"});
    warning.polygons = polygonsIn(feature);
    return alert;
}

std::optional<Alert> readStormWarning(const QJsonObject& feature) {
    const QJsonObject properties = feature.value(QLatin1String("properties")).toObject();
    const auto kind = warningKindOfVtec(textIn(properties, "phenomena"));
    if (!kind || textIn(properties, "significance") != u"W") {
        return std::nullopt;
    }
    static const QStringList over = {
        QStringLiteral("CAN"), QStringLiteral("EXP"), QStringLiteral("UPG")};
    Alert alert;
    alert.isCancelled = over.contains(textIn(properties, "status"));
    alert.id = textIn(feature, "id");
    alert.event = QStringLiteral("%1.%2.W.%3")
                      .arg(textIn(properties, "wfo").right(3), textIn(properties, "phenomena"))
                      .arg(properties.value(QLatin1String("eventid")).toInt(), 4, 10, QChar(u'0'));
    alert.sent = firstTimeIn(properties, {"updated", "polygon_begin"});
    WeatherWarning& warning = alert.warning;
    warning.kind = *kind;
    warning.id = alert.event;
    warning.office = QStringLiteral("NWS ") + textIn(properties, "wfo");
    warning.headline = textIn(properties, "ps");
    warning.begin = timeIn(properties, "polygon_begin");
    warning.end = firstTimeIn(properties, {"polygon_end", "expire"});
    warning.polygons = polygonsIn(feature);
    return alert;
}

tl::expected<std::vector<Alert>, QString>
readFeatures(const QByteArray& json, std::optional<Alert> (*read)(const QJsonObject&)) {
    QJsonParseError error{};
    const QJsonObject whole = QJsonDocument::fromJson(json, &error).object();
    const QJsonValue features = whole.value(QLatin1String("features"));
    if (error.error != QJsonParseError::NoError) {
        return tl::unexpected(QStringLiteral("the answer is no JSON: ") + error.errorString());
    }
    if (!features.isArray()) {
        return tl::unexpected(QStringLiteral("the answer has no list of warnings"));
    }
    std::vector<Alert> alerts;
    const QJsonArray list = features.toArray();
    for (qsizetype i = 0; i < std::min(list.size(), kMostAlerts); ++i) {
        if (auto alert = read(list[i].toObject())) {
            alerts.push_back(std::move(*alert));
        }
    }
    return alerts;
}

} // namespace

tl::expected<std::vector<Alert>, QString> readAlerts(const QByteArray& json) {
    return readFeatures(json, readAlert);
}

tl::expected<std::vector<Alert>, QString> readStormWarnings(const QByteArray& json) {
    return readFeatures(json, readStormWarning);
}

std::vector<WeatherWarning> warningsOf(const std::vector<Alert>& alerts) {
    std::set<QString> replaced;
    for (const Alert& alert : alerts) {
        replaced.insert(alert.references.begin(), alert.references.end());
    }
    // The newest message of each event; of those sent together the last one.
    std::map<QString, const Alert*> events;
    for (const Alert& alert : alerts) {
        const Alert*& newest = events[alert.event.isEmpty() ? alert.id : alert.event];
        if (newest == nullptr || alert.sent >= newest->sent) {
            newest = &alert;
        }
    }
    std::vector<WeatherWarning> warnings;
    for (const auto& [name, alert] : events) {
        const bool isReplaced = alert->event.isEmpty() && replaced.contains(alert->id);
        if (!alert->isCancelled && !isReplaced && !alert->warning.polygons.empty()) {
            warnings.push_back(alert->warning);
        }
    }
    return warnings;
}

} // namespace raincast
