// SPDX-License-Identifier: MIT
#include "sample/sample_memory.h"

#include <QHashFunctions>

#include <numeric>

namespace raincast {

namespace {

constexpr int kMegabyte = 1024 * 1024;

// Rain: a storm total of the longest kind and some more. Sums: the last ones of most sites. Echoes
// and velocities are of use only while one picture of them follows the other.
constexpr std::array<int, 4> kMostOfKind = {
    12 * kMegabyte, 10 * kMegabyte, 3 * kMegabyte, 3 * kMegabyte};
static_assert(
    std::accumulate(kMostOfKind.begin(), kMostOfKind.end(), 0) == SampleMemory::kMostBytes
);

} // namespace

SampleMemory::SampleMemory() {
    static_assert(kMostOfKind.size() == kKinds);
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
        m_grids[kind].setMaxCost(kMostOfKind[kind]);
    }
}

std::shared_ptr<const SampleGrid> SampleMemory::find(const Key& key) const {
    const std::lock_guard lock(m_mutex);
    const auto* const found = m_grids[static_cast<std::size_t>(key.kind)].object(key);
    return found != nullptr ? *found : nullptr;
}

void SampleMemory::keep(const Key& key, std::shared_ptr<const SampleGrid> grid) {
    const auto bytes = static_cast<qsizetype>(grid->size()) * qsizetype{sizeof(float)};
    const std::lock_guard lock(m_mutex);
    m_grids[static_cast<std::size_t>(key.kind)].insert(
        key, new std::shared_ptr<const SampleGrid>(std::move(grid)), bytes
    );
}

std::size_t qHash(const SampleMemory::Key& key, std::size_t seed) {
    return qHashMulti(
        seed, static_cast<int>(key.kind), quint64(key.climate), qint64(key.from), qint64(key.to),
        key.size
    );
}

} // namespace raincast
