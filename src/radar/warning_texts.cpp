// SPDX-License-Identifier: MIT
#include "radar/warning_texts.h"

#include "core/whole_file.h"
#include "radar/cache.h"
#include "radar/catalogue/frame_name.h"
#include "radar/warnings_file.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace raincast {

namespace {

QString textOf(const QJsonValue& value) {
    return value.toString().left(kMostTextLetters);
}

FileTime timeOf(const QJsonValue& value) {
    const QDateTime time = QDateTime::fromString(value.toString(), Qt::ISODate);
    // FileTime begins in 1601, and ends late.
    return time.isValid() && time.date().year() > 1601 && time.date().year() < 10'000
               ? kUnixEpoch + time.toSecsSinceEpoch() * kFileTimePerSecond
               : 0;
}

std::optional<GeoPosition> cornerOf(const QJsonValue& value) {
    const QJsonArray pair = value.toArray();
    const GeoPosition corner{pair.at(0).toDouble(NAN), pair.at(1).toDouble(NAN)};
    const bool isOnEarth = std::abs(corner.latitude) <= 90 && std::abs(corner.longitude) <= 360;
    return isOnEarth ? std::optional(corner) : std::nullopt; // never for a NaN
}

/// Empty where a corner is none.
WarningText::Ring ringOf(const QJsonValue& value) {
    WarningText::Ring ring;
    for (const QJsonValue corner : value.toArray()) {
        const auto position = cornerOf(corner);
        if (!position) {
            return {};
        }
        ring.push_back(*position);
    }
    return ring;
}

/// Empty where the outline is none; holes that are none are passed over.
WarningText::Polygon polygonOf(const QJsonValue& value) {
    WarningText::Polygon polygon;
    for (const QJsonValue member : value.toArray()) {
        WarningText::Ring ring = ringOf(member);
        if (!ring.empty()) {
            polygon.push_back(std::move(ring));
        } else if (polygon.empty()) {
            return {};
        }
    }
    return polygon;
}

/// Servers of before gave no ids: what is prolonged keeps its begin then.
QString idOf(const QJsonObject& object) {
    const QString id = textOf(object[u"id"]);
    const QStringList known = {
        textOf(object[u"event"]), textOf(object[u"office"]), textOf(object[u"begin"])};
    return id.isEmpty() ? known.join(u'|') : id;
}

std::optional<WarningText> warningOf(const QJsonObject& object) {
    WarningText warning;
    warning.event = textOf(object[u"event"]);
    warning.id = idOf(object);
    warning.office = textOf(object[u"office"]);
    warning.headline = textOf(object[u"headline"]);
    warning.text = textOf(object[u"text"]);
    warning.instruction = textOf(object[u"instruction"]);
    warning.begin = timeOf(object[u"begin"]);
    warning.end = timeOf(object[u"end"]);
    for (const QJsonValue member : object[u"polygons"].toArray()) {
        WarningText::Polygon polygon = polygonOf(member);
        if (!polygon.empty()) {
            warning.polygons.push_back(std::move(polygon));
        }
    }
    return warning.event.isEmpty() ? std::nullopt : std::optional(std::move(warning));
}

} // namespace

std::optional<WarningTexts> readWarningTexts(const QByteArray& json) {
    if (json.size() >= kMostWarningTextBytes) {
        return std::nullopt;
    }
    const QJsonObject whole = QJsonDocument::fromJson(json).object();
    if (!whole[u"warnings"].isArray()) {
        return std::nullopt;
    }
    WarningTexts texts;
    texts.isSample = whole[u"sample"].toBool();
    for (const QJsonValue member : whole[u"warnings"].toArray()) {
        auto warning = warningOf(member.toObject());
        if (warning && texts.warnings.size() < kMostWarningTexts) {
            texts.warnings.push_back(std::move(*warning));
        }
    }
    return texts;
}

QString warningTextsFile(const QString& cacheFolder, const QString& siteId) {
    const QString folder = siteCacheFolder(cacheFolder, siteId);
    return folder.isEmpty() ? QString() : folder + u'/' + warningTextsFileName(siteId);
}

std::shared_ptr<const WarningTexts>
loadWarningTexts(const QString& cacheFolder, const QString& siteId, const QString& range) {
    if (!hasWarningsOf(cacheFolder, siteId, range)) {
        return nullptr;
    }
    const auto bytes = readWhole(warningTextsFile(cacheFolder, siteId), kMostWarningTextBytes);
    auto texts = bytes ? readWarningTexts(*bytes) : std::nullopt;
    return texts ? std::make_shared<const WarningTexts>(std::move(*texts)) : nullptr;
}

} // namespace raincast
