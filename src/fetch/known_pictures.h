// SPDX-License-Identifier: MIT
#pragma once

#include "radar/picture_loader.h"

#include <QHash>
#include <QString>

#include <mutex>
#include <optional>

namespace raincast {

/// Remembers which files of the cache are pictures, from one run to the next: to decode them takes
/// longer than all else when there is nothing new, and nobody looks at them here.
///
/// A file is known by its path and stays known while its size, its times, its number and its device
/// are the same. What cannot be read of the index is as if it had not been there.
class KnownPictures {
public:
    /// The index file, which need not be there; an empty path: nothing is kept.
    explicit KnownPictures(QString index);

    /// Whether the file is one that was decoded before. For any thread, as load() is.
    [[nodiscard]] bool isKnown(const QString& file);

    /// Decodes the file; nothing when it is no picture. From then on one is known. Nobody gets to
    /// see it.
    [[nodiscard]] std::optional<LoadedPicture> load(const QString& file);

    /// Writes the index if it has changed, without the files that are gone or others by now. A
    /// failure only costs time at the next run.
    void save();

    /// Of this user: $XDG_CACHE_HOME/raincast-fetch/pictures.
    [[nodiscard]] static QString usualIndex();

private:
    void read();

    QString m_index;
    std::mutex m_mutex;                 ///< of what follows
    QHash<QString, QByteArray> m_known; ///< a stamp for each path
    bool m_hasChanged = false;
};

} // namespace raincast
