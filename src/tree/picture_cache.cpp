// SPDX-License-Identifier: MIT
#include "tree/picture_cache.h"

namespace raincast {

std::optional<QByteArray> PictureCache::find(const QByteArray& path) const {
    const std::lock_guard lock(m_mutex);
    const QByteArray* const found = m_cache.object(path);
    return found == nullptr ? std::nullopt : std::optional(*found);
}

void PictureCache::insert(const QByteArray& path, const QByteArray& bytes) {
    const std::lock_guard lock(m_mutex);
    m_cache.insert(path, new QByteArray(bytes), bytes.size());
}

qsizetype PictureCache::bytes() const {
    const std::lock_guard lock(m_mutex);
    return m_cache.totalCost();
}

} // namespace raincast
