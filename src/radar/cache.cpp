// SPDX-License-Identifier: MIT
#include "radar/cache.h"

#include "core/folders.h"
#include "core/special_folders.h"
#include "core/storage_cards.h"
#include "core/text.h"
#include "core/whole_file.h"

#include <QFileInfo>
#include <QStringBuilder>
#include <QStringList>

#include <algorithm>
#include <cerrno>

namespace raincast {

namespace {

constexpr QStringView kMakerFolder = u"/Quorvane";
constexpr QStringView kCacheFolder = u"Quorvane/Temp/Weather";

} // namespace

QString cardCacheFolder(const QString& card) {
    return card % u'/' % kCacheFolder;
}

QString internalCacheFolder() {
    return folderInApplicationData(kCacheFolder.toString()).value_or(QString());
}

QString ChooseDefaultCache() {
    const QString internal = internalCacheFolder();
    QString chosen = internal;
    const QStringList cards = ListStorageCards();
    // Make nothing on a card that this program was never used with.
    const auto card = std::find_if(cards.begin(), cards.end(), [](const QString& path) {
        return QFileInfo(path % kMakerFolder).isDir();
    });
    if (card != cards.end() && EnsureFolder(cardCacheFolder(*card))) {
        chosen = cardCacheFolder(*card);
    }
    // The user may have made the root a link to another folder.
    DeleteMatchingExcept(QFileInfo(internal).canonicalFilePath(), QStringLiteral("\?\?\?_*"), {});
    return chosen;
}

bool isOfBranch(const QString& path, const QString& branch) {
    return branch.isEmpty() ? !path.contains(u'/' % QStringView(kSampleBranch) % u'/') &&
                                  !path.contains(u'/' % QStringView(kReplayBranch))
                            : path.contains(u'/' % branch % u'/');
}

QString siteCacheFolder(const QString& cacheFolder, QStringView siteId) {
    // Without a cache the path must not begin at the file system's root.
    return cacheFolder.isEmpty() ? QString() : cacheFolder % u'/' % siteId;
}

tl::expected<void, QString> makeSiteFolder(const QString& cacheFolder, QStringView siteId) {
    if (cacheFolder.isEmpty()) {
        return tl::make_unexpected(qt_error_string(ENOENT));
    }
    return makeFolder(siteCacheFolder(cacheFolder, siteId));
}

QString sharpCacheFile(const QString& file, int detail) {
    const auto name = file.lastIndexOf(u'/') + 1;
    return file.left(name) % u'x' % QString::number(detail) % u'/' % file.mid(name);
}

QStringList withSharpFolders(const QString& siteFolder) {
    return {siteFolder % u"/x4", siteFolder % u"/x2", siteFolder};
}

QString cacheFailureText(const QString& cacheFolder, const QString& cause) {
    if (cacheFolder.isEmpty()) {
        return Text::tr("There is no folder\nfor the image cache.\n");
    }
    return Text::tr("Could not write to\nthe cache folder\n%1:\n%2.\n").arg(cacheFolder, cause);
}

void deleteStaleFrames(
    const QString& cacheFolder, QStringView siteId, QStringView productCode,
    const std::set<QString>& listed
) {
    const QString pattern = siteId % u"_2*_" % productCode % u".gif";
    const QString folder = siteCacheFolder(cacheFolder, siteId);
    if (folder.isEmpty()) {
        return;
    }
    for (const QString& part : withSharpFolders(folder)) {
        DeleteMatchingExcept(part, pattern, listed);
        removeAbandonedFiles(part);
    }
}

} // namespace raincast
