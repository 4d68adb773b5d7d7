// SPDX-License-Identifier: MIT
#pragma once

#include "maps/map_data.h"
#include "radar/catalogue/antenna_positions.h"
#include "radar/catalogue/product.h"
#include "radar/catalogue/tree_index.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <mutex>
#include <optional>
#include <string_view>

namespace raincast {

/// The map layers of all sites, each painted when it is first asked for and kept on disk from then
/// on: the described ones for good, those of more detail up to a bound, the ones that were written
/// last. May be asked from several threads at once.
class LayerStore {
public:
    /// What a layer is of. The antenna is borrowed; its id names the layer in the folder.
    struct Wanted {
        LayerKind layer;
        const AntennaPosition& antenna;
        Range range;
        int detail = 1; ///< of ImageGeometry
    };

    /// `folder` is made at need; its layers are those of the present map data only. An empty one
    /// keeps nothing. The data are borrowed.
    LayerStore(const MapData& data, const QString& folder, qint64 mostSharpBytes = kMostSharpBytes);

    /// The bytes of a layer; nothing when there is no memory. A folder that cannot be written to
    /// costs time, nothing else.
    [[nodiscard]] std::optional<QByteArray> layer(const Wanted& wanted) const;

    /// The most bytes that layers of more detail may have on disk.
    static constexpr qint64 kMostSharpBytes = qint64{64} * 1024 * 1024;

private:
    [[nodiscard]] std::mutex& paintingOf(const Wanted& wanted) const;
    [[nodiscard]] QString fileOf(const Wanted& wanted) const;
    void keep(const QString& file, const QByteArray& painted, bool isSharp) const;

    const MapData& m_data;
    QString m_folder;      ///< of the described ones; empty: nothing is kept
    QString m_sharpFolder; ///< of the others
    QString m_sharpPrefix; ///< of their names
    qint64 m_mostSharpBytes;
    /// One for each kind: several clients that start with the same site wait for one painting. The
    /// second half are for layers of more detail, which nobody else waits for.
    mutable std::array<std::mutex, 2 * kAllLayers.size()> m_painting;
    mutable std::mutex m_sharpMutex; ///< of deleting in the sharp folder
};

} // namespace raincast
