// SPDX-License-Identifier: MIT
#pragma once

#include "provider/live_object.h"
#include "tree/server_log.h"

#include <QCache>
#include <QString>

#include <mutex>
#include <optional>
#include <vector>

namespace raincast {

/// Providers' objects on disk, each under its key and tag, whole or not at all. Where the disk
/// takes nothing the latest few stay in memory. For several threads at once.
class LiveStore {
public:
    /// The folder is made at need, and only this object uses it.
    LiveStore(QString folder, ServerLog log);

    /// The objects that are there, without their bytes; older ones are deleted.
    [[nodiscard]] std::vector<LiveObject> load(FileTime oldest);

    /// Keeps an object with its bytes, in the place of another one with its key. The first of
    /// several failures in a row is logged.
    void keep(const LiveObject& object);

    /// Whether an object is there, as far as its file's name says.
    [[nodiscard]] bool has(const LiveObject& object) const;

    /// The bytes of an object, if it is there and what its key says.
    [[nodiscard]] std::optional<QByteArray> read(const LiveObject& object) const;

    void drop(const LiveObject& object);

private:
    [[nodiscard]] QString folderOf(const LiveName& name) const;
    [[nodiscard]] QString fileOf(const LiveObject& object) const;

    QString m_folder;
    ServerLog m_log;
    mutable std::mutex m_mutex; ///< of what follows
    mutable QCache<QString, QByteArray> m_latest;
    bool m_cannotWrite = false; ///< this is logged already
};

} // namespace raincast
