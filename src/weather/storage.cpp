// SPDX-License-Identifier: MIT
#include "weather/storage.h"

#include "core/folders.h"
#include "core/text.h"
#include "geo/local_frame.h"
#include "radar/cache.h"
#include "radar/catalogue/sites.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QStringList>

#include <utility>

namespace raincast {

namespace {

constexpr float kNearbyMetres = 300'000;

/// The patterns of the names of a site's files that a clean-up deletes.
QStringList patternsToDelete(const StorageCleanup& cleanup, bool far) {
    QString kinds;
    if (far || !cleanup.keepNearbyRadar) {
        kinds += QStringLiteral("2WN");
    }
    if (cleanup.basemaps && (far || !cleanup.keepNearbyBasemaps)) {
        kinds += QStringLiteral("CHRT");
    }
    QStringList patterns;
    for (const QChar kind : std::as_const(kinds)) {
        patterns.append(QStringLiteral("\?\?\?_") + kind + u'*');
    }
    return patterns;
}

bool isFolder(const QFileInfo& path) {
    return path.isDir() && !path.isSymLink();
}

/// The folders of weather that is not live.
QStringList branches(const QString& cacheFolder) {
    const QStringList names = {
        QString::fromUtf16(kSampleBranch), QString::fromUtf16(kReplayBranch) + u'*'};
    QStringList folders;
    const auto filter = QDir::Dirs | QDir::Hidden | QDir::NoSymLinks;
    for (const QString& name : QDir(cacheFolder).entryList(names, filter)) {
        folders += cacheFolder + u'/' + name;
    }
    return folders;
}

/// Calls `visit(folder, patterns)` for each site's folder with what a clean-up deletes there,
/// whichever weather it is.
template<typename Visit>
void forEachSite(
    const QString& cacheFolder, const StorageCleanup& cleanup, GeoPosition viewCentre, Visit visit
) {
    if (!cleanup.cachedFiles || cacheFolder.isEmpty()) {
        return;
    }
    const QStringList roots = QStringList(cacheFolder) + branches(cacheFolder);
    const LocalFrame frame(viewCentre);
    for (const RadarSite& site : radarSites()) {
        const bool far = siteDistanceMetres(frame, site) > kNearbyMetres;
        for (const QString& root : roots) {
            const QStringList folders = withSharpFolders(siteCacheFolder(root, site.idText()));
            if (!isFolder(QFileInfo(folders.back()))) {
                continue;
            }
            for (const QString& folder : folders) {
                if (isFolder(QFileInfo(folder))) {
                    visit(folder, patternsToDelete(cleanup, far));
                }
            }
        }
    }
}

/// The number of files below a folder. A link counts as one file and is not followed.
int countFiles(const QString& folder) {
    const auto filter = QDir::Files | QDir::System | QDir::Hidden;
    QDirIterator files(folder, filter, QDirIterator::Subdirectories);
    int count = 0;
    for (; files.hasNext(); files.next()) {
        ++count;
    }
    return count;
}

/// Moves the whole cache, or nothing.
bool moveCache(const StorageRequest& request, const QString& target) {
    if (!request.progress) {
        return moveTreeOrBringBack(request.cacheFolder, target);
    }
    const int wanted = countFiles(request.cacheFolder);
    request.progress(0, wanted);
    return moveTreeOrBringBack(request.cacheFolder, target, [&](int done) {
        request.progress(done, wanted);
    });
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
    const auto cleanUp = [](const QString& folder, const QStringList& patterns) {
        for (const QString& pattern : patterns) {
            DeleteMatchingExcept(folder, pattern, {});
        }
        QDir().rmdir(folder); // removes only an empty one
    };
    forEachSite(cacheFolder, cleanup, viewCentre, cleanUp);
    if (cleanup.cachedFiles && !cacheFolder.isEmpty()) {
        for (const QString& branch : branches(cacheFolder)) {
            QDir().rmdir(branch);
        }
    }
}

void removeBranch(const QString& cacheFolder, const QString& branch) {
    if (!cacheFolder.isEmpty() && !branch.isEmpty()) {
        QDir(cacheFolder + u'/' + branch).removeRecursively();
    }
}

StorageCount
countCleanUp(const QString& cacheFolder, const StorageCleanup& cleanup, GeoPosition viewCentre) {
    StorageCount count;
    const auto add = [&count](const QString& folder, const QStringList& patterns) {
        QDirIterator files(folder, patterns, QDir::Files | QDir::Hidden | QDir::System);
        while (!patterns.isEmpty() && files.hasNext()) {
            files.next();
            ++count.files;
            count.bytes += files.fileInfo().size();
        }
    };
    forEachSite(cacheFolder, cleanup, viewCentre, add);
    return count;
}

StorageResult applyStorage(const StorageRequest& request) {
    const QString target = request.card ? cardCacheFolder(*request.card) : internalCacheFolder();
    if (request.card && !EnsureFolder(target)) {
        return failure(request, Text::tr("Failed to create folder: %1"), target);
    }
    cleanUpCache(request.cacheFolder, request.cleanup, request.viewCentre);
    if (target == request.cacheFolder) {
        return {target, std::nullopt};
    }
    if (!moveCache(request, target)) {
        return failure(request, Text::tr("Failed to move data to %1"), target);
    }
    // If this fails, the next download tries it again.
    static_cast<void>(EnsureFolder(siteCacheFolder(target, request.siteId)));
    return {target, std::nullopt};
}

} // namespace raincast
