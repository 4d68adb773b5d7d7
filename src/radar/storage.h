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

/// Called while the cache is moved: so many of its files are at their new place.
using StorageProgress = std::function<void(int done, int wanted)>;

/// What the user asks for with the dialog's OK.
struct StorageRequest {
    /// Root of the storage card to keep the cache on; none for the internal memory.
    std::optional<QString> card;
    StorageCleanup cleanup;
    GeoPosition viewCentre;   ///< what is near is near to this
    QString cacheFolder;      ///< the cache root in use
    QString siteId;           ///< the current site
    StorageProgress progress; ///< may be empty
};

/// What has become of it.
struct StorageResult {
    /// The cache root in use from now on: the one asked for, or after an error the old one.
    QString cacheFolder;
    /// The message to show, titled "Error", while the dialog stays open; none when all went well.
    std::optional<QString> error;
};

/// Which line of "Cache images on:" to select at first: 0 for the internal memory, n for the n-th
/// card: the last one whose path the cache root begins with.
[[nodiscard]] qsizetype selectedStorage(const QStringList& cards, const QString& cacheFolder);

/// Deletes cached files of all sites below the cache root as the check boxes say; near is a site
/// within 300 km of the view centre. Site folders that are empty then go too. What cannot be
/// deleted stays, silently. An empty cacheFolder deletes nothing.
void cleanUpCache(
    const QString& cacheFolder, const StorageCleanup& cleanup, GeoPosition viewCentre
);

/// The dialog's OK: makes the new root, cleans up, moves the cache. A root that cannot be made
/// changes nothing; a move that fails is undone, but the clean-up before it is not. The program is
/// busy (BusyGuard) meanwhile.
[[nodiscard]] StorageResult applyStorage(const StorageRequest& request);

} // namespace raincast
