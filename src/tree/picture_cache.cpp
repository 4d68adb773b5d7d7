// SPDX-License-Identifier: MIT
#include "tree/picture_cache.h"

namespace raincast {

std::optional<TreeBody> PictureCache::find(const QByteArray& path) const {
    const std::lock_guard lock(m_mutex);
    const TreeBody* const found = m_cache.object(path);
    return found == nullptr ? std::nullopt : std::optional(*found);
}

void PictureCache::insert(const QByteArray& path, const TreeBody& body) {
    const std::lock_guard lock(m_mutex);
    m_cache.insert(path, new TreeBody(body), body.bytes().size());
}

qsizetype PictureCache::bytes() const {
    const std::lock_guard lock(m_mutex);
    return m_cache.totalCost();
}

} // namespace raincast
