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
/// on. May be asked from several threads at once.
class LayerStore {
public:
    /// `folder` is made at need; its layers are those of the present map data only. An empty one
    /// keeps nothing. The data are borrowed.
    LayerStore(const MapData& data, const QString& folder);

    /// The bytes of a layer around an antenna, whose id names it in the folder; nothing when there
    /// is no memory. A folder that cannot be written to costs time, nothing else.
    [[nodiscard]] std::optional<QByteArray>
    layer(LayerKind layer, const AntennaPosition& antenna, Range range) const;

private:
    [[nodiscard]] QString fileOf(LayerKind layer, std::string_view site, Range range) const;

    const MapData& m_data;
    QString m_folder;
    /// One for each kind: several clients that start with the same site wait for one painting.
    mutable std::array<std::mutex, kAllLayers.size()> m_painting;
};

} // namespace raincast
