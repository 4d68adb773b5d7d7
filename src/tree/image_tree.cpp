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

#include <chrono>
#include <future>

namespace raincast {

namespace {

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

std::vector<std::string> namesOf(const FrameFolder& folder, const std::vector<FileTime>& times) {
    std::vector<std::string> names;
    names.reserve(times.size());
    for (const FileTime time : times) {
        names.push_back(frameName(folder, time));
    }
    return names;
}

QByteArray bytesOf(std::string_view text) {
    return {text.data(), static_cast<qsizetype>(text.size())};
}

/// Tells these times from all others.
QByteArray bytesOf(const std::vector<FileTime>& times) {
    return {
        reinterpret_cast<const char*>(times.data()),
        static_cast<qsizetype>(times.size() * sizeof(FileTime))};
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
        return asker.tell(page->second());
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
    Keeping keeping = Keeping::aDay;
    if (isOfWarnings(item)) {
        key += '@' + QByteArray::number(qlonglong(thisMinute()));
        keeping = Keeping::aMoment;
    } else if (item.kind == TreeItem::Kind::frame) {
        const FrameStamp stamp = m_frames.stamp(item.site, item.product, item.time);
        key += '@' + stamp.version;
        keeping = stamp.mayChange || isNewest(item) ? Keeping::aMoment : Keeping::forGood;
    }
    const char* const type = typeOf(path);
    Store& store = item.detail == 1 ? m_described : m_sharp;
    if (const auto body = kept(key, store.cache)) {
        return asker.tell(TreeAnswer{*body, type, keeping});
    }
    const auto tell = [=, tell = std::move(asker.tell)](const PictureMakers::Picture& made) {
        tell(made ? std::optional(TreeAnswer{*made, type, keeping}) : std::nullopt);
    };
    const auto makeAndKeep = [this, &store, key, item]() -> PictureMakers::Picture {
        const auto made = make(item);
        if (!made) {
            return std::nullopt;
        }
        TreeBody body(*made);
        static_cast<void>(body.tag()); // here, not in the thread that answers
        store.cache.insert(key, body);
        return body;
    };
    store.makers.make(key, makeAndKeep, {tell, std::move(asker.isWaiting)});
}

std::optional<TreeAnswer> ImageTree::find(std::string_view path) const {
    // Shared: a thread that sets the value may still use the promise when get() returns.
    const auto found = std::make_shared<std::promise<std::optional<TreeAnswer>>>();
    ask(path, {[found](std::optional<TreeAnswer> answer) { found->set_value(std::move(answer)); },
               [] { return true; }});
    return found->get_future().get();
}

std::optional<TreeBody> ImageTree::kept(const QByteArray& key, const PictureCache& cache) const {
    const auto body = cache.find(key);
    ++(body ? m_hits : m_misses);
    return body;
}

std::optional<QByteArray> ImageTree::make(const TreeItem& item) const {
    const auto begin = std::chrono::steady_clock::now();
    auto made = item.kind == TreeItem::Kind::frame ? makeFrame(item) : makeOfSite(item);
    Meter& meter = meterOf(item);
    ++meter.pictures;
    meter.microseconds += std::chrono::duration_cast<std::chrono::microseconds>(
                              std::chrono::steady_clock::now() - begin
    )
                              .count();
    return made;
}

ImageTree::Meter& ImageTree::meterOf(const TreeItem& item) const {
    return item.kind == TreeItem::Kind::frame ? m_frameMeter
           : isOfWarnings(item)               ? m_warningsMeter
                                              : m_layerMeter;
}

ImageTree::Counts::Made ImageTree::Meter::count() const {
    return {pictures, static_cast<double>(microseconds) / 1e6};
}

ImageTree::Counts ImageTree::counts() const {
    return {m_frameMeter.count(), m_warningsMeter.count(), m_layerMeter.count(), m_hits, m_misses};
}

std::optional<QByteArray> ImageTree::makeFrame(const TreeItem& item) const {
    return item.detail == 1 ? m_frames.frame(item.site, item.product, item.time)
                            : m_frames.sharpFrame(item.site, item.product, item.time, item.detail);
}

// What lies round a site's antenna.
std::optional<QByteArray> ImageTree::makeOfSite(const TreeItem& item) const {
    const AntennaPosition* const antenna = m_frames.antenna(item.site);
    if (antenna == nullptr) {
        return std::nullopt;
    }
    const ImageGeometry image(antenna->latitude, antenna->longitude, item.range, item.detail);
    switch (item.kind) {
    case TreeItem::Kind::warnings:
        return renderWarnings(image, m_frames.warnings(item.site, item.range, thisMinute()));
    case TreeItem::Kind::warningTexts:
        return warningsText(image, m_frames.warnings(item.site, item.range, thisMinute()));
    case TreeItem::Kind::layer:
        return m_layers.layer({item.layer, *antenna, item.range, item.detail});
    case TreeItem::Kind::frame:
    case TreeItem::Kind::worldFile:
        break;
    }
    return QByteArray::fromStdString(image.worldFile());
}

void ImageTree::askForFolder(std::string_view path, TreeAsker asker) const {
    if (const auto folder = findFrameFolder(path)) {
        const auto tell = [this, folder = *folder, asker = std::move(asker)] {
            const auto times = timesOf(folder);
            const std::string at = pathOf(folder);
            TreeAnswer answer{listing(at, bytesOf(times), [&] { return namesOf(folder, times); })};
            answer.source = wordOf(m_frames.state(folder.site, folder.product));
            asker.tell(answer);
        };
        return m_frames.prepareTimes(folder->site, folder->product, tell);
    }
    auto names = namesInFolder(path);
    if (names.empty()) {
        return asker.tell(std::nullopt);
    }
    asker.tell(TreeAnswer{listing(path, {}, [&] { return std::move(names); })});
}

// What is listed does not change while the key is the same.
TreeBody ImageTree::listing(
    std::string_view path, const QByteArray& key,
    const std::function<std::vector<std::string>()>& names
) const {
    const QByteArray whole = bytesOf(path) + key;
    if (const auto body = kept(whole, m_described.cache)) {
        return *body;
    }
    const TreeBody body(listingPage(path, names()));
    m_described.cache.insert(whole, body);
    return body;
}

std::vector<std::string> ImageTree::framesIn(const FrameFolder& folder) const {
    waitFor([&](std::function<void()> ready) {
        m_frames.prepareTimes(folder.site, folder.product, std::move(ready));
    });
    return namesOf(folder, timesOf(folder));
}

bool ImageTree::mayChange(std::string_view path) const {
    const auto item = findTreeItem(path);
    return item && item->kind == TreeItem::Kind::frame &&
           m_frames.stamp(item->site, item->product, item->time).mayChange;
}

bool ImageTree::isNewest(std::string_view path) const {
    const auto item = findTreeItem(path);
    return item && item->kind == TreeItem::Kind::frame && isNewest(*item);
}

bool ImageTree::isNewest(const TreeItem& item) const {
    const auto times = timesOf({item.site, item.product});
    return times.empty() || item.time >= times.back();
}

std::vector<FileTime> ImageTree::timesOf(const FrameFolder& folder) const {
    return m_frames.frameTimes(folder.site, folder.product, Clock::current().now());
}

void ImageTree::addPage(std::string path, MakePage page) {
    m_pages.insert_or_assign(std::move(path), std::move(page));
}

void ImageTree::addPage(std::string path, const char* type, std::function<QByteArray()> page) {
    addPage(std::move(path), [type, page = std::move(page)] {
        return TreeAnswer{page(), type, Keeping::askAgain};
    });
}

} // namespace raincast
