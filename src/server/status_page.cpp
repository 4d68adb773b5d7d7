// SPDX-License-Identifier: MIT
#include "server/status_page.h"

#include "core/clock.h"
#include "maps/map_data.h"
#include "radar/catalogue/antenna_positions.h"
#include "tree/frame_source.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace raincast {

namespace {

QString textOf(FileTime time) {
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(toUnixSeconds(time)), Qt::UTC)
        .toString(Qt::ISODate);
}

QString textOf(std::string_view text) {
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

/// {"LWX":{"N0R":"2018-07-25T19:24:00Z",...},...}; a site without frames is left out.
QJsonObject newestFrames(const FrameSource& frames, FileTime now) {
    QJsonObject sites;
    for (const AntennaPosition& antenna : antennaPositions()) {
        QJsonObject products;
        for (const Product product : kAllProducts) {
            const auto times = frames.frameTimes(antenna.id, product, now);
            if (!times.empty()) {
                products[textOf(codeOf(product))] = textOf(times.back());
            }
        }
        if (!products.isEmpty()) {
            sites[textOf(antenna.id)] = products;
        }
    }
    return sites;
}

QJsonObject mapData(const MapDataFiles& files) {
    return {
        {QStringLiteral("shores"), !files.shores.isEmpty()},
        {QStringLiteral("rivers"), !files.rivers.isEmpty()},
        {QStringLiteral("relief"), !files.relief.isEmpty()},
        {QStringLiteral("counties"), !files.borders.isEmpty()},
        {QStringLiteral("cities"), !files.cities.isEmpty()},
        {QStringLiteral("highways"), !files.roads.isEmpty()},
    };
}

} // namespace

QByteArray statusPage(const ServerStatus& status, const FrameSource& frames, const MapData& maps) {
    const FileTime now = Clock::current().now();
    QJsonObject page{
        {QStringLiteral("program"), QStringLiteral("raincast-server")},
        {QStringLiteral("version"), QStringLiteral(RAINCAST_VERSION)},
        {QStringLiteral("source"), status.source},
        {QStringLiteral("started"), textOf(status.started)},
        {QStringLiteral("now"), textOf(now)},
        {QStringLiteral("bytesInMemory"), status.bytesInMemory},
        {QStringLiteral("mapData"), mapData(maps.files())},
        {QStringLiteral("newest"), newestFrames(frames, now)},
    };
    if (status.counts) {
        page[QStringLiteral("requests")] = static_cast<qint64>(status.counts->requests);
        page[QStringLiteral("notFound")] = static_cast<qint64>(status.counts->notFound);
        page[QStringLiteral("refusedConnections")] = static_cast<qint64>(status.counts->refused);
        page[QStringLiteral("displacedConnections")] =
            static_cast<qint64>(status.counts->displaced);
    }
    return QJsonDocument(page).toJson();
}

} // namespace raincast
