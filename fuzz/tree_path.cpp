// SPDX-License-Identifier: MIT
// Paths that somebody asks a server for: what is found is of the tree, and stands at that very
// path.
#include "radar/catalogue/antenna_positions.h"
#include "radar/catalogue/tree_index.h"
#include "server/request_counts.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace raincast;
    const std::string_view path(reinterpret_cast<const char*>(data), size);
    const auto folder = findFrameFolder(path);
    if (folder && pathOf(*folder) != path) {
        std::abort();
    }
    const auto item = findTreeItem(path);
    if (item && findAntenna(item->site) == nullptr) {
        std::abort();
    }
    if (item && item->kind == TreeItem::Kind::frame) {
        const FrameFolder frames{item->site, item->product};
        if (pathOf(frames) + frameName(frames, item->time) != path) {
            std::abort();
        }
    }
    for (const int detail : {2, 4}) {
        const auto sharp = sharpPath(path, detail);
        const auto sharpItem = sharp ? findTreeItem(*sharp) : std::nullopt;
        if (sharpItem && (!item || sharpItem->detail != detail || sharpItem->site != item->site)) {
            std::abort();
        }
    }
    if (item && requestKindOf(path, true) == RequestKind::page) {
        std::abort();
    }
    for (const std::string& name : namesInFolder(path)) {
        if (name.empty() || name.find('/') < name.size() - 1) {
            std::abort();
        }
    }
    return 0;
}
