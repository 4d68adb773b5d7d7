// SPDX-License-Identifier: MIT
#pragma once

#include "core/file_time.h"
#include "radar/catalogue/product.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// The names of the image tree:
//
//   /ridge/RadarImg/N0R/LWX/LWX_20180725_1924_N0R.gif  a frame; its time is UTC, to the minute
//   /ridge/Warnings/Short/LWX_Warnings_0.gif           the present warnings
//   /ridge/Warnings/Short/LWX_Warnings_0.json          their texts
//   /ridge/Overlays/Topo/Short/LWX_Topo_Short.jpg      layers, each with its world file (.gfw)
//   /ridge/Overlays/Cities/Short/LWX_City_Short.gfw
//   /weather_radar/basemaps/LWX_County_Short.gif       the layers of the basemap server
//
// All pictures are there with more pixels, too, which listings do not name. Texts and world files
// are not: those above hold for them.
//
//   /ridge/x2/RadarImg/N0R/LWX/LWX_20180725_1924_N0R.gif  twice as many each way
//   /ridge/x4/Overlays/Topo/Short/LWX_Topo_Short.jpg      four times as many
//   /weather_radar/x2/basemaps/LWX_County_Short.gif
//
// A path is valid only if it is one of these, letter for letter: nothing that a client sends ever
// becomes the name of a file.
namespace raincast {

/// The map layers, each a picture of the size of a frame.
enum class LayerKind { topo, rivers, highways, counties, cities };

inline constexpr std::array kAllLayers = {
    LayerKind::topo, LayerKind::rivers, LayerKind::highways, LayerKind::counties,
    LayerKind::cities};

/// What a path of the tree stands for. `product` and `time` are a frame's only, `layer` a layer's.
struct TreeItem {
    enum class Kind { frame, warnings, warningTexts, layer, worldFile };

    Kind kind;
    std::string site;
    Range range = Range::shortRange;
    LayerKind layer = LayerKind::topo;
    Product product = Product::baseReflectivity;
    FileTime time = 0;
    int detail = 1; ///< of ImageGeometry

    friend bool operator==(const TreeItem&, const TreeItem&) = default;
};

/// What a path stands for; none for any other text. A frame's path can have the right form without
/// the frame existing.
[[nodiscard]] std::optional<TreeItem> findTreeItem(std::string_view path);

/// Where the picture or the folder of a described path stands with `detail` times as many pixels
/// each way, 2 or 4: "/ridge/x2/Warnings/Short/LWX_Warnings_0.gif". Nothing for a path that stands
/// elsewhere.
[[nodiscard]] std::optional<std::string> sharpPath(std::string_view path, int detail);

/// A folder of frames.
struct FrameFolder {
    std::string site;
    Product product;

    friend bool operator==(const FrameFolder&, const FrameFolder&) = default;
};

/// "/ridge/RadarImg/N0R/LWX/"
[[nodiscard]] std::string pathOf(const FrameFolder& folder);
[[nodiscard]] std::optional<FrameFolder> findFrameFolder(std::string_view path);
/// All of them, 7 products times 155 sites.
[[nodiscard]] const std::vector<FrameFolder>& allFrameFolders();

/// "LWX_20180725_1924_N0R.gif"
[[nodiscard]] std::string frameName(const FrameFolder& folder, FileTime time);

/// The paths of everything that every site has at any time (warnings, layers, world files), sorted.
[[nodiscard]] const std::vector<std::string>& standingPaths();

/// The names in a folder of the tree other than a folder of frames, sorted, folders with "/" at
/// their end; empty when there is no such folder. The folder's path ends in "/".
[[nodiscard]] std::vector<std::string> namesInFolder(std::string_view folder);

/// "topo", "rivers", "highways", "counties", "cities"
[[nodiscard]] std::string_view nameOf(LayerKind layer);

} // namespace raincast
