// SPDX-License-Identifier: MIT
#include "radar/storage.h"

#include "geo/local_frame.h"
#include "platform/busy_guard.h"
#include "radar/cache.h"
#include "radar/sites.h"

#include <QDir>
#include <QFileInfo>

#include <initializer_list>

namespace raincast {

namespace {

constexpr float kNearbyMetres = 300'000;

void deleteKinds(const QString& folder, std::initializer_list<QChar> kinds) {
    for (const QChar kind : kinds) {
        DeleteMatchingExcept(folder, QStringLiteral("\?\?\?_") + kind + u'*', {});
    }
}

void cleanUpSite(const QString& folder, const StorageCleanup& cleanup, bool far) {
    if (far || !cleanup.keepNearbyRadar) {
        deleteKinds(folder, {u'2', u'W', u'N'});
    }
    if (cleanup.basemaps && (far || !cleanup.keepNearbyBasemaps)) {
        deleteKinds(folder, {u'C', u'H', u'R', u'T'});
    }
    // Only an empty folder goes.
    QDir().rmdir(folder);
}

StorageResult failure(const StorageRequest& request, const QString& message, const QString& path) {
    return {request.cacheFolder, message.arg(path)};
}

} // namespace

qsizetype selectedStorage(const QStringList& cards, const QString& cacheFolder) {
    for (qsizetype i = cards.size(); i > 0; --i) {
        if (cacheFolder.startsWith(cards[i - 1])) {
            return i;
        }
    }
    return 0;
}

void cleanUpCache(
    const QString& cacheFolder, const StorageCleanup& cleanup, GeoPosition viewCentre
) {
    if (!cleanup.cachedFiles || cacheFolder.isEmpty()) {
        return;
    }
    const LocalFrame frame(viewCentre);
    for (const RadarSite& site : radarSites()) {
        const QFileInfo folder(siteCacheFolder(cacheFolder, site.idText()));
        if (folder.isDir() && !folder.isSymLink()) {
            cleanUpSite(
                folder.filePath(), cleanup, siteDistanceMetres(frame, site) > kNearbyMetres
            );
        }
    }
}

StorageResult applyStorage(const StorageRequest& request) {
    const QString target = request.card ? cardCacheFolder(*request.card) : internalCacheFolder();
    if (request.card && !EnsureFolder(target)) {
        return failure(request, QStringLiteral("Failed to create folder: %1"), target);
    }
    // Whoever shows the progress may let paint events through, and nothing else.
    const BusyGuard busy;
    cleanUpCache(request.cacheFolder, request.cleanup, request.viewCentre);
    if (target == request.cacheFolder) {
        return {target, std::nullopt};
    }
    if (!MoveTreeOrBringBack(request.cacheFolder, target, request.progress)) {
        return failure(request, QStringLiteral("Failed to move data to %1"), target);
    }
    // The next download makes it too, should this fail.
    static_cast<void>(EnsureFolder(siteCacheFolder(target, request.siteId)));
    return {target, std::nullopt};
}

} // namespace raincast
