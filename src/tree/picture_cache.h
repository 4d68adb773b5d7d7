// SPDX-License-Identifier: MIT
#pragma once

#include "tree/tree_body.h"

#include <QCache>

#include <mutex>
#include <optional>

namespace raincast {

/// Files' bytes, with their tags, by their path, the least recently used forgotten first. May be
/// used from several threads at once.
class PictureCache {
public:
    explicit PictureCache(qsizetype mostBytes) : m_cache(mostBytes) {}

    /// The bytes kept for a path.
    [[nodiscard]] std::optional<TreeBody> find(const QByteArray& path) const;

    /// Keeps bytes (which are shared, not copied). Those larger than the cache are not kept.
    void insert(const QByteArray& path, const TreeBody& body);

    [[nodiscard]] qsizetype bytes() const;

private:
    mutable std::mutex m_mutex;
    QCache<QByteArray, TreeBody> m_cache;
};

} // namespace raincast
