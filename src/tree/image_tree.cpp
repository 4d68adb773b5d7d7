// SPDX-License-Identifier: MIT
#include "tree/image_tree.h"

#include "core/clock.h"
#include "radar/catalogue/antenna_positions.h"
#include "radar/catalogue/image_geometry.h"
#include "tree/frame_source.h"
#include "tree/layer_store.h"
#include "tree/listing_page.h"

#include <future>

namespace raincast {

namespace {

constexpr int kDay = 24 * 60 * 60;

const char* typeOf(std::string_view path) {
    return path.ends_with(".gif")   ? "image/gif"
           : path.ends_with(".jpg") ? "image/jpeg"
                                    : "text/plain; charset=utf-8";
}

FileTime thisMinute() {
    const FileTime now = Clock::current().now();
    return now - now % kFileTimePerMinute;
}

/// The cache key of a path: warnings change from minute to minute.
QByteArray keyOf(std::string_view path, const TreeItem& item) {
    QByteArray key(path.data(), static_cast<qsizetype>(path.size()));
    if (item.kind == TreeItem::Kind::warnings) {
        key += '@' + QByteArray::number(qlonglong(thisMinute()));
    }
    return key;
}

std::optional<QByteArray> worldFileOf(const TreeItem& item) {
    const AntennaPosition* const antenna = findAntenna(item.site);
    if (antenna == nullptr) {
        return std::nullopt;
    }
    return QByteArray::fromStdString(
        ImageGeometry(antenna->latitude, antenna->longitude, item.range).worldFile()
    );
}

} // namespace

ImageTree::ImageTree(const FrameSource& frames, const LayerStore& layers)
    : m_frames(frames), m_layers(layers) {}

void ImageTree::ask(std::string_view path, TreeAsker asker) const {
    if (const auto page = m_pages.find(path); page != m_pages.end()) {
        return asker.tell(TreeAnswer{page->second.make(), page->second.type, 0});
    }
    if (path.ends_with('/')) {
        return asker.tell(findFolder(path));
    }
    const auto item = findTreeItem(path);
    if (!item || item->time > Clock::current().now()) {
        return asker.tell(std::nullopt);
    }
    askForItem(path, *item, std::move(asker));
}

void ImageTree::askForItem(std::string_view path, const TreeItem& item, TreeAsker asker) const {
    const QByteArray key = keyOf(path, item);
    const char* const type = typeOf(path);
    const int maxAge = item.kind == TreeItem::Kind::warnings ? 0 : kDay;
    if (const auto kept = m_cache.find(key)) {
        return asker.tell(TreeAnswer{*kept, type, maxAge});
    }
    const auto tell = [=, tell = std::move(asker.tell)](const std::optional<QByteArray>& made) {
        tell(made ? std::optional(TreeAnswer{*made, type, maxAge}) : std::nullopt);
    };
    const auto makeAndKeep = [this, key, item] {
        const auto made = make(item);
        if (made) {
            m_cache.insert(key, *made);
        }
        return made;
    };
    m_makers.make(key, makeAndKeep, {tell, std::move(asker.isWaiting)});
}

std::optional<TreeAnswer> ImageTree::find(std::string_view path) const {
    // Shared: a thread that sets the value may still use the promise when get() returns.
    const auto found = std::make_shared<std::promise<std::optional<TreeAnswer>>>();
    ask(path, {[found](std::optional<TreeAnswer> answer) { found->set_value(std::move(answer)); },
               [] { return true; }});
    return found->get_future().get();
}

std::optional<QByteArray> ImageTree::make(const TreeItem& item) const {
    switch (item.kind) {
    case TreeItem::Kind::frame:
        return m_frames.frame(item.site, item.product, item.time);
    case TreeItem::Kind::warnings:
        return m_frames.warnings(item.site, item.range, thisMinute());
    case TreeItem::Kind::layer:
        return m_layers.layer(item.layer, item.site, item.range);
    case TreeItem::Kind::worldFile:
        break;
    }
    return worldFileOf(item);
}

std::optional<TreeAnswer> ImageTree::findFolder(std::string_view path) const {
    if (const auto folder = findFrameFolder(path)) {
        return TreeAnswer{listingPage(path, framesIn(*folder))};
    }
    const auto names = namesInFolder(path);
    return names.empty() ? std::nullopt : std::optional(TreeAnswer{listingPage(path, names)});
}

std::vector<std::string> ImageTree::framesIn(const FrameFolder& folder) const {
    std::vector<std::string> names;
    for (const FileTime time :
         m_frames.frameTimes(folder.site, folder.product, Clock::current().now())) {
        names.push_back(frameName(folder, time));
    }
    return names;
}

void ImageTree::addPage(std::string path, const char* type, std::function<QByteArray()> page) {
    m_pages.insert_or_assign(std::move(path), Page{type, std::move(page)});
}

} // namespace raincast
