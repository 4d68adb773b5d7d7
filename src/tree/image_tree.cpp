// SPDX-License-Identifier: MIT
#include "tree/image_tree.h"

#include "core/clock.h"
#include "radar/catalogue/antenna_positions.h"
#include "radar/catalogue/image_geometry.h"
#include "tree/frame_source.h"
#include "tree/layer_store.h"
#include "tree/listing_page.h"
#include "tree/warnings_painter.h"
#include "tree/warnings_text.h"

#include <future>

namespace raincast {

namespace {

constexpr int kDay = 24 * 60 * 60;

const char* typeOf(std::string_view path) {
    return path.ends_with(".gif")    ? "image/gif"
           : path.ends_with(".jpg")  ? "image/jpeg"
           : path.ends_with(".json") ? "application/json"
                                     : "text/plain; charset=utf-8";
}

FileTime thisMinute() {
    const FileTime now = Clock::current().now();
    return now - now % kFileTimePerMinute;
}

bool isOfWarnings(const TreeItem& item) {
    return item.kind == TreeItem::Kind::warnings || item.kind == TreeItem::Kind::warningTexts;
}

/// Calls `prepare` with something to be called, and waits until it is.
template<typename Prepare>
void waitFor(Prepare prepare) {
    // Shared: a thread that sets the value may still use the promise when get() returns.
    const auto ready = std::make_shared<std::promise<void>>();
    prepare([ready] { ready->set_value(); });
    ready->get_future().get();
}

} // namespace

ImageTree::ImageTree(const FrameSource& frames, const LayerStore& layers)
    : m_frames(frames), m_layers(layers) {}

void ImageTree::ask(std::string_view path, TreeAsker asker) const {
    if (const auto page = m_pages.find(path); page != m_pages.end()) {
        return asker.tell(TreeAnswer{page->second.make(), page->second.type, 0});
    }
    if (path.ends_with('/')) {
        return askForFolder(path, std::move(asker));
    }
    const auto item = findTreeItem(path);
    if (!item || item->time > Clock::current().now()) {
        return asker.tell(std::nullopt);
    }
    prepare(*item, [this, path = std::string(path), item = *item, asker = std::move(asker)] {
        askForItem(path, item, asker);
    });
}

// Lets the source of frames look elsewhere first.
void ImageTree::prepare(const TreeItem& item, std::function<void()> ready) const {
    if (item.kind == TreeItem::Kind::frame) {
        m_frames.prepareFrame(item.site, item.product, item.time, std::move(ready));
    } else if (isOfWarnings(item)) {
        m_frames.prepareWarnings(std::move(ready));
    } else {
        ready();
    }
}

void ImageTree::askForItem(const std::string& path, const TreeItem& item, TreeAsker asker) const {
    // Warnings change from minute to minute, and some frames do.
    QByteArray key = QByteArray::fromStdString(path);
    bool isFinal = !isOfWarnings(item);
    if (!isFinal) {
        key += '@' + QByteArray::number(qlonglong(thisMinute()));
    } else if (item.kind == TreeItem::Kind::frame) {
        const FrameStamp stamp = m_frames.stamp(item.site, item.product, item.time);
        key += '@' + stamp.version;
        isFinal = !stamp.mayChange;
    }
    const char* const type = typeOf(path);
    const int maxAge = isFinal ? kDay : 0;
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
    return item.kind == TreeItem::Kind::frame ? m_frames.frame(item.site, item.product, item.time)
                                              : makeOfSite(item);
}

// What lies round a site's antenna.
std::optional<QByteArray> ImageTree::makeOfSite(const TreeItem& item) const {
    const AntennaPosition* const antenna = m_frames.antenna(item.site);
    if (antenna == nullptr) {
        return std::nullopt;
    }
    const ImageGeometry image(antenna->latitude, antenna->longitude, item.range);
    switch (item.kind) {
    case TreeItem::Kind::warnings:
        return renderWarnings(image, m_frames.warnings(item.site, item.range, thisMinute()));
    case TreeItem::Kind::warningTexts:
        return warningsText(image, m_frames.warnings(item.site, item.range, thisMinute()));
    case TreeItem::Kind::layer:
        return m_layers.layer(item.layer, *antenna, item.range);
    case TreeItem::Kind::frame:
    case TreeItem::Kind::worldFile:
        break;
    }
    return QByteArray::fromStdString(image.worldFile());
}

void ImageTree::askForFolder(std::string_view path, TreeAsker asker) const {
    if (const auto folder = findFrameFolder(path)) {
        const auto tell = [this, folder = *folder, asker = std::move(asker)] {
            TreeAnswer answer{listingPage(pathOf(folder), namesOf(folder))};
            answer.source = wordOf(m_frames.state(folder.site, folder.product));
            asker.tell(answer);
        };
        return m_frames.prepareTimes(folder->site, folder->product, tell);
    }
    const auto names = namesInFolder(path);
    asker.tell(names.empty() ? std::nullopt : std::optional(TreeAnswer{listingPage(path, names)}));
}

std::vector<std::string> ImageTree::framesIn(const FrameFolder& folder) const {
    waitFor([&](std::function<void()> ready) {
        m_frames.prepareTimes(folder.site, folder.product, std::move(ready));
    });
    return namesOf(folder);
}

bool ImageTree::mayChange(std::string_view path) const {
    const auto item = findTreeItem(path);
    return item && item->kind == TreeItem::Kind::frame &&
           m_frames.stamp(item->site, item->product, item->time).mayChange;
}

std::vector<std::string> ImageTree::namesOf(const FrameFolder& folder) const {
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
