// SPDX-License-Identifier: MIT
#include "server/status_page.h"

#include "core/clock.h"
#include "core/utc_date_time.h"
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
    return utcDateTime(time).toString(Qt::ISODate);
}

/// At a speed of 60 a second of the world is a minute of the weather.
QString toMilliseconds(FileTime time) {
    constexpr FileTime kMillisecond = kFileTimePerSecond / 1000;
    return QDateTime::fromMSecsSinceEpoch((time - kUnixEpoch) / kMillisecond, Qt::UTC)
        .toString(Qt::ISODateWithMs);
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

QJsonValue timeOf(FileTime time) {
    return time == 0 ? QJsonValue() : textOf(time);
}

QJsonArray providersOf(const LiveStatus& live) {
    QJsonArray providers;
    for (const LiveStatus::Host& host : live.hosts) {
        providers += QJsonObject{
            {QStringLiteral("name"), host.name},
            {QStringLiteral("host"), host.host},
            {QStringLiteral("requests"), static_cast<qint64>(host.health.requests)},
            {QStringLiteral("bytes"), static_cast<qint64>(host.health.bytes)},
            {QStringLiteral("failures"), host.health.failures},
            {QStringLiteral("problem"), host.health.problem},
            {QStringLiteral("resting"), host.rests},
            {QStringLiteral("lastAnswer"), timeOf(host.health.lastGood)},
        };
    }
    return providers;
}

/// {"TLX":{"N0R":{"newest":...,"ageSeconds":84,"provider":...,"state":"ok"}}}
QJsonObject wantedOf(const LiveStatus& live, FileTime now) {
    QJsonObject sites;
    for (const LiveStatus::Wanted& wanted : live.wanted) {
        const QString site = textOf(wanted.site);
        QJsonObject products = sites[site].toObject();
        const QJsonValue age =
            wanted.newest == 0 ? QJsonValue()
                               : static_cast<qint64>((now - wanted.newest) / kFileTimePerSecond);
        products[textOf(codeOf(wanted.product))] = QJsonObject{
            {QStringLiteral("newest"), timeOf(wanted.newest)},
            {QStringLiteral("ageSeconds"), age},
            {QStringLiteral("provider"), wanted.provider},
            {QStringLiteral("state"), textOf(wordOf(wanted.state))},
        };
        sites[site] = products;
    }
    return sites;
}

} // namespace

QString wordOf(SourceKind kind) {
    return kind == SourceKind::sample   ? QStringLiteral("sample")
           : kind == SourceKind::level3 ? QStringLiteral("level3")
                                        : QStringLiteral("live");
}

QByteArray statusPage(const ServerStatus& status, const FrameSource& frames, const MapData& maps) {
    const FileTime now = Clock::current().now();
    QJsonObject page{
        {QStringLiteral("program"), QStringLiteral("raincast-server")},
        {QStringLiteral("version"), QStringLiteral(RAINCAST_VERSION)},
        {QStringLiteral("source"), wordOf(status.source)},
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
    if (status.live) {
        page[QStringLiteral("reachable")] = status.live->reachable;
        page[QStringLiteral("providers")] = providersOf(*status.live);
        page[QStringLiteral("wanted")] = wantedOf(*status.live, now);
    }
    if (status.replay) {
        page[QStringLiteral("replay")] = QJsonObject{
            {QStringLiteral("begin"), textOf(status.replay->replay().begin)},
            {QStringLiteral("speed"), status.replay->replay().speed},
            {QStringLiteral("started"), toMilliseconds(status.replay->start())},
        };
    }
    return QJsonDocument(page).toJson();
}

} // namespace raincast
