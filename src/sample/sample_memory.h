// SPDX-License-Identifier: MIT
#pragma once

#include <QCache>

#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace raincast {

/// A number for each place of some grid, row by row.
using SampleGrid = std::vector<float>;

/// Keeps results of sample weather that other pictures use again: products of one minute share
/// echoes, and the rain of an hour ago is part of many sums. Forgets the least recently used grids,
/// each kind by itself. It only saves time: the numbers are the same without it. May be used from
/// several threads at once.
class SampleMemory {
public:
    enum class Kind {
        rain,       ///< millimetres an hour at a minute
        rainSum,    ///< inches from one minute to another
        echoes,     ///< dBZ that the lowest beam sees
        velocities, ///< knots away from the antenna
    };
    struct Key {
        Kind kind;
        std::uint64_t climate; ///< its seed
        std::int64_t from;     ///< minute; the same as `to` where there is only one
        std::int64_t to;
        int size; ///< of the grid, in units of its kind

        friend bool operator==(const Key&, const Key&) = default;
    };

    SampleMemory();

    /// Null when it is not kept.
    [[nodiscard]] std::shared_ptr<const SampleGrid> find(const Key& key) const;

    void keep(const Key& key, std::shared_ptr<const SampleGrid> grid);

    /// The grid that is kept, or else the one that `make` makes. Two threads may make the same one.
    template<typename Make>
    [[nodiscard]] std::shared_ptr<const SampleGrid> get(const Key& key, Make make) {
        auto grid = find(key);
        if (grid == nullptr) {
            grid = std::make_shared<const SampleGrid>(make());
            keep(key, grid);
        }
        return grid;
    }

    /// The most bytes that are kept, of all kinds together.
    static constexpr int kMostBytes = 28 * 1024 * 1024;

private:
    static constexpr std::size_t kKinds = 4;

    mutable std::mutex m_mutex;
    mutable std::array<QCache<Key, std::shared_ptr<const SampleGrid>>, kKinds> m_grids;
};

[[nodiscard]] std::size_t qHash(const SampleMemory::Key& key, std::size_t seed = 0);

} // namespace raincast
