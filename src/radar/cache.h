// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QStringView>

#include <set>
#include <tl/expected.hpp>

namespace raincast {

// The image cache: one root folder, and below it one folder per radar site named by the site's id.
// Every file lies directly in its site's folder and begins with the id and an underscore; the
// character after that says what it is, and the clean-ups go by it:
//   2 a radar frame (its year)   W the warnings image    N any other image of the radar
//     or the newest one's tag        or their texts
//   C counties, cities and the world file   H highways   R rivers   T topographic map
// Sharp pictures lie in folders of the site's folder, x2 and x4, each named as the described one
// that it is of. Sample weather has the same below a folder of its own in the root, so that it is
// never taken for weather that was measured, and neither cleans up after the other.

/// The cache root on a storage card: CARD/Quorvane/Temp/Weather. The folder is not made.
[[nodiscard]] QString cardCacheFolder(const QString& card);

/// The cache root in the user's application data; makes it if it is missing. Empty when the user
/// has no folder for application data.
[[nodiscard]] QString internalCacheFolder();

/// The cache root to use until the user chooses another one: on the first storage card that already
/// has a folder "Quorvane", if the root can be made there; otherwise the internal one. Also deletes
/// the files of the internal root itself (not those in the sites' folders) that are named like
/// cached files: an earlier layout left them there.
[[nodiscard]] QString ChooseDefaultCache();

/// The folder of sample weather in the cache root.
inline constexpr char16_t kSampleBranch[] = u".sample";

/// What the folders of past storms in the cache root begin with.
inline constexpr char16_t kReplayBranch[] = u".replay-";

/// Whether a cached file belongs to a folder of the cache root, or, with an empty name, to the root
/// itself.
[[nodiscard]] bool isOfBranch(const QString& path, const QString& branch);

/// The folder of one site: ROOT/SSS. Empty without a root.
[[nodiscard]] QString siteCacheFolder(const QString& cacheFolder, QStringView siteId);

/// Makes the folder of a site, with its parents, unless it is there. The reason of a failure is in
/// the system's words: "Permission denied". Without a root it fails.
[[nodiscard]] tl::expected<void, QString>
makeSiteFolder(const QString& cacheFolder, QStringView siteId);

/// The file of a cached picture with `detail` times as many pixels each way:
/// ROOT/SSS/x2/NAME for ROOT/SSS/NAME.
[[nodiscard]] QString sharpCacheFile(const QString& file, int detail);

/// The folders of a site's sharp pictures and then its own, in which they lie, whether or not they
/// are there.
[[nodiscard]] QStringList withSharpFolders(const QString& siteFolder);

/// The status text for a cache that cannot be written; `cause` is in the system's words.
[[nodiscard]] QString cacheFailureText(const QString& cacheFolder, const QString& cause);

/// Deletes a site's frames of one product that the server no longer lists, and the unfinished files
/// of programs that were killed more than an hour ago. Does nothing without a root.
/// @param listed the names of the server's listing
void deleteStaleFrames(
    const QString& cacheFolder, QStringView siteId, QStringView productCode,
    const std::set<QString>& listed
);

} // namespace raincast
