// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QCache>

#include <mutex>
#include <optional>

namespace raincast {

/// Files' bytes by their path, the least recently used forgotten first. May be used from several
/// threads at once.
class PictureCache {
public:
    explicit PictureCache(qsizetype mostBytes) : m_cache(mostBytes) {}

    /// The bytes kept for a path.
    [[nodiscard]] std::optional<QByteArray> find(const QByteArray& path) const;

    /// Keeps bytes (which are shared, not copied). Those larger than the cache are not kept.
    void insert(const QByteArray& path, const QByteArray& bytes);

    [[nodiscard]] qsizetype bytes() const;

private:
    mutable std::mutex m_mutex;
    QCache<QByteArray, QByteArray> m_cache;
};

} // namespace raincast
