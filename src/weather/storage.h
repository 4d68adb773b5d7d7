// SPDX-License-Identifier: MIT
#pragma once

#include "geo/geo_position.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace raincast {

/// The check boxes of the "Radar Image Storage" dialog, as they stand when it opens.
struct StorageCleanup {
    bool cachedFiles = true;        ///< "Cleanup cached files": without it nothing is deleted
    bool keepNearbyRadar = false;   ///< "Keep nearby radar images"
    bool basemaps = false;          ///< "Cleanup basemaps"
    bool keepNearbyBasemaps = true; ///< "Keep nearby basemaps"
};

/// Called while the cache moves: `done` of its `wanted` files are at their new place.
using StorageProgress = std::function<void(int done, int wanted)>;

/// What the user asks for with the dialog's OK.
struct StorageRequest {
    /// Root of the storage card to keep the cache on; none for the internal memory.
    std::optional<QString> card;
    StorageCleanup cleanup;
    GeoPosition viewCentre;   ///< "nearby" means near to this
    QString cacheFolder;      ///< the cache root in use
    QString siteId;           ///< the current site
    StorageProgress progress; ///< may be empty
};

/// The outcome of a request.
struct StorageResult {
    /// The cache root in use from now on: the new one, or after an error the old one.
    QString cacheFolder;
    /// The message to show, titled "Error", while the dialog stays open; none after success.
    std::optional<QString> error;
};

/// Which line of "Cache images on:" to select at first: 0 for the internal memory, n for the n-th
/// card: the last one whose path the cache root begins with.
[[nodiscard]] qsizetype selectedStorage(const QStringList& cards, const QString& cacheFolder);

/// Deletes cached files of all sites below the cache root, sample weather too, as the check boxes
/// say; near is a site within 300 km of the view centre. Also deletes site folders that are empty
/// then. A file that cannot be deleted stays, without a message. An empty cacheFolder deletes
/// nothing.
void cleanUpCache(
    const QString& cacheFolder, const StorageCleanup& cleanup, GeoPosition viewCentre
);

/// Deletes a folder of the cache root with all that is in it.
void removeBranch(const QString& cacheFolder, const QString& branch);

/// What a clean-up would delete.
struct StorageCount {
    qint64 files = 0;
    qint64 bytes = 0;
};
/// Counts the files that cleanUpCache() would delete at present. It reads many folders: it is for
/// another thread.
[[nodiscard]] StorageCount
countCleanUp(const QString& cacheFolder, const StorageCleanup& cleanup, GeoPosition viewCentre);

/// Carries out the dialog's OK: makes the new root, cleans up, moves the cache. If the root cannot
/// be made nothing changes; a move that fails is undone, but the clean-up before it is not.
/// Meanwhile the program is busy (BusyGuard).
[[nodiscard]] StorageResult applyStorage(const StorageRequest& request);

} // namespace raincast
