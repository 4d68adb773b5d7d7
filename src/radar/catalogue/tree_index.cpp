// SPDX-License-Identifier: MIT
#include "radar/catalogue/tree_index.h"

#include "radar/catalogue/antenna_positions.h"
#include "radar/catalogue/frame_name.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <set>

namespace raincast {

namespace {

constexpr std::string_view kFramesFolder = "/ridge/RadarImg/";
constexpr std::size_t kFrameNameLength = 25;

/// Where pictures with more pixels stand, and the described ones that they belong to.
struct SharpFolder {
    std::string_view path;
    std::string_view described;
    int detail;
};
constexpr SharpFolder kSharpFolders[] = {
    {"/ridge/x2/", "/ridge/", 2},
    {"/ridge/x4/", "/ridge/", 4},
    {"/weather_radar/x2/", "/weather_radar/", 2},
    {"/weather_radar/x4/", "/weather_radar/", 4},
};

/// One kind of file that every site has for each range: FOLDER SSS _ WORD. In both, "%" stands for
/// the range's word.
struct StandingFile {
    TreeItem::Kind kind;
    LayerKind layer;
    std::string_view folder;
    std::string_view word;
};

constexpr auto kLayer = TreeItem::Kind::layer;
constexpr auto kWorldFile = TreeItem::Kind::worldFile;

// clang-format off
constexpr StandingFile kStandingFiles[] = {
    {TreeItem::Kind::warnings, LayerKind::topo, "/ridge/Warnings/%/", "Warnings_0.gif"},
    {TreeItem::Kind::warningTexts, LayerKind::topo, "/ridge/Warnings/%/", "Warnings_0.json"},
    {kLayer,     LayerKind::topo,     "/ridge/Overlays/Topo/%/",     "Topo_%.jpg"},
    {kWorldFile, LayerKind::topo,     "/ridge/Overlays/Topo/%/",     "Topo_%.gfw"},
    {kLayer,     LayerKind::rivers,   "/ridge/Overlays/Rivers/%/",   "Rivers_%.gif"},
    {kWorldFile, LayerKind::rivers,   "/ridge/Overlays/Rivers/%/",   "Rivers_%.gfw"},
    {kLayer,     LayerKind::highways, "/ridge/Overlays/Highways/%/", "Highways_%.gif"},
    {kWorldFile, LayerKind::highways, "/ridge/Overlays/Highways/%/", "Highways_%.gfw"},
    {kLayer,     LayerKind::cities,   "/ridge/Overlays/Cities/%/",   "City_%.gif"},
    {kWorldFile, LayerKind::cities,   "/ridge/Overlays/Cities/%/",   "City_%.gfw"},
    {kLayer,     LayerKind::counties, "/weather_radar/basemaps/",    "County_%.gif"},
    {kLayer,     LayerKind::cities,   "/weather_radar/basemaps/",    "City_%.gif"},
};
// clang-format on

std::string withRange(std::string_view text, Range range) {
    std::string result(text);
    if (const auto place = result.find('%'); place != std::string::npos) {
        result.replace(place, 1, wordOf(range));
    }
    return result;
}

std::map<std::string, TreeItem, std::less<>> makeStandingItems() {
    std::map<std::string, TreeItem, std::less<>> items;
    for (const StandingFile& file : kStandingFiles) {
        for (const Range range : kRanges) {
            for (const AntennaPosition& antenna : antennaPositions()) {
                const std::string site(antenna.id);
                items[withRange(file.folder, range) + site + "_" + withRange(file.word, range)] = {
                    file.kind, site, range, file.layer};
            }
        }
    }
    return items;
}

const std::map<std::string, TreeItem, std::less<>>& standingItems() {
    static const auto items = makeStandingItems();
    return items;
}

int digits(std::string_view text, std::size_t at, std::size_t count) {
    int value = 0;
    const char* const begin = text.data() + at;
    const auto [end, error] = std::from_chars(begin, begin + count, value);
    return error == std::errc() && end == begin + count ? value : -1;
}

/// The minute in "LWX_20180725_1924_N0R.gif"; 0 where its digits are not a time.
FileTime timeInName(std::string_view name) {
    return fromCalendar(
        {digits(name, 4, 4), digits(name, 8, 2), digits(name, 10, 2), digits(name, 13, 2),
         digits(name, 15, 2)}
    );
}

std::optional<TreeItem> findFrame(std::string_view path) {
    const auto slash = path.rfind('/');
    if (slash == std::string_view::npos || path.size() - slash - 1 != kFrameNameLength) {
        return std::nullopt;
    }
    const auto folder = findFrameFolder(path.substr(0, slash + 1));
    const std::string_view name = path.substr(slash + 1);
    const FileTime time = folder ? timeInName(name) : 0;
    if (time == 0 || frameName(*folder, time) != name) {
        return std::nullopt;
    }
    return TreeItem{TreeItem::Kind::frame, folder->site,    rangeOf(folder->product),
                    LayerKind::topo,       folder->product, time};
}

std::optional<TreeItem> findDescribed(std::string_view path) {
    const auto standing = standingItems().find(path);
    return standing != standingItems().end() ? standing->second : findFrame(path);
}

bool isPicture(TreeItem::Kind kind) {
    return kind == TreeItem::Kind::frame || kind == TreeItem::Kind::warnings ||
           kind == TreeItem::Kind::layer;
}

/// What has the same path without the detail's folder, if it is a described picture.
std::optional<TreeItem> findSharp(std::string_view path) {
    for (const SharpFolder& sharp : kSharpFolders) {
        if (!path.starts_with(sharp.path)) {
            continue;
        }
        auto item =
            findDescribed(std::string(sharp.described).append(path.substr(sharp.path.size())));
        if (!item || item->detail != 1 || !isPicture(item->kind)) {
            return std::nullopt;
        }
        item->detail = sharp.detail;
        return item;
    }
    return std::nullopt;
}

} // namespace

std::optional<TreeItem> findTreeItem(std::string_view path) {
    const auto described = findDescribed(path);
    return described ? described : findSharp(path);
}

std::optional<std::string> sharpPath(std::string_view path, int detail) {
    for (const SharpFolder& sharp : kSharpFolders) {
        if (sharp.detail == detail && path.starts_with(sharp.described)) {
            return std::string(sharp.path).append(path.substr(sharp.described.size()));
        }
    }
    return std::nullopt;
}

std::string pathOf(const FrameFolder& folder) {
    return std::string(kFramesFolder) + std::string(codeOf(folder.product)) + "/" + folder.site +
           "/";
}

std::optional<FrameFolder> findFrameFolder(std::string_view path) {
    // /ridge/RadarImg/N0R/LWX/
    constexpr std::size_t kLength = kFramesFolder.size() + 8;
    if (path.size() != kLength || !path.starts_with(kFramesFolder)) {
        return std::nullopt;
    }
    const auto product = productOfCode(path.substr(kFramesFolder.size(), 3));
    const std::string_view site = path.substr(kFramesFolder.size() + 4, 3);
    if (!product || findAntenna(site) == nullptr) {
        return std::nullopt;
    }
    FrameFolder folder{std::string(site), *product};
    return pathOf(folder) == path ? std::optional(std::move(folder)) : std::nullopt;
}

const std::vector<FrameFolder>& allFrameFolders() {
    static const auto folders = [] {
        std::vector<FrameFolder> result;
        for (const Product product : kAllProducts) {
            for (const AntennaPosition& antenna : antennaPositions()) {
                result.push_back({std::string(antenna.id), product});
            }
        }
        return result;
    }();
    return folders;
}

std::string frameName(const FrameFolder& folder, FileTime time) {
    const std::string_view code = codeOf(folder.product);
    return frameFileName(
               QString::fromStdString(folder.site), time,
               QString::fromLatin1(code.data(), static_cast<qsizetype>(code.size()))
    )
        .toStdString();
}

const std::vector<std::string>& standingPaths() {
    static const auto paths = [] {
        std::vector<std::string> result;
        for (const auto& [path, item] : standingItems()) {
            result.push_back(path);
        }
        return result;
    }();
    return paths;
}

std::vector<std::string> namesInFolder(std::string_view folder) {
    static const auto allPaths = [] {
        std::set<std::string, std::less<>> paths(standingPaths().begin(), standingPaths().end());
        for (const FrameFolder& frames : allFrameFolders()) {
            paths.insert(pathOf(frames));
        }
        return paths;
    }();
    if (folder.empty() || folder.back() != '/') {
        return {};
    }
    std::vector<std::string> names;
    for (auto path = allPaths.lower_bound(folder);
         path != allPaths.end() && path->starts_with(folder); ++path) {
        const std::string_view rest = std::string_view(*path).substr(folder.size());
        const std::string_view name = rest.substr(0, rest.find('/') + 1);
        const std::string entry(name.empty() ? rest : name);
        if (!entry.empty() && (names.empty() || names.back() != entry)) {
            names.push_back(entry);
        }
    }
    return names;
}

std::string_view nameOf(LayerKind layer) {
    constexpr std::string_view kNames[] = {"topo", "rivers", "highways", "counties", "cities"};
    return kNames[static_cast<std::size_t>(layer)];
}

} // namespace raincast
