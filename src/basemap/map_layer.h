// SPDX-License-Identifier: MIT
#pragma once

#include "basemap/basemaps.h"

#include <QString>

#include <cstdint>
#include <span>

namespace raincast {

struct FileKind;

/// A layer of a site's map: where its file comes from, and onto what it is drawn.
struct MapLayer {
    enum class Source : std::uint8_t { radarServer, basemapServer };
    enum class Ground : std::uint8_t { topo, topoElseOverlay, overlay };

    bool BasemapLayers::*shown;
    const char* word; ///< in the file's name: BMX_City_Short.gif
    const char* extension;
    const FileKind& kind;
    Source source;
    const char* folder; ///< on the radar server, below its overlays
    Ground ground;
    bool required; ///< without its file a load ends

    /// Whether it is drawn onto the topo, which may be there or not; otherwise onto the overlay.
    [[nodiscard]] bool isOnTopo(bool hasTopo) const {
        return ground == Ground::topo || (ground == Ground::topoElseOverlay && hasTopo);
    }
};

/// In the order in which they are loaded and drawn over each other.
[[nodiscard]] std::span<const MapLayer> mapLayers();

/// The name of a layer's file: "BMX_City_Short.gif". `range` is "Short" or "Long".
[[nodiscard]] QString fileNameOf(const MapLayer& layer, const QString& siteId, QStringView range);

/// Its path on its server.
[[nodiscard]] QString serverPathOf(const MapLayer& layer, const QString& siteId, QStringView range);

} // namespace raincast
