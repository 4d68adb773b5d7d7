// SPDX-License-Identifier: MIT
#include "sharp/sharp_pictures.h"

#include "core/clock.h"
#include "radar/cache.h"
#include "radar/catalogue/frame_name.h"
#include "radar/catalogue/products.h"
#include "radar/file_kinds.h"

#include <QFileInfo>
#include <QImage>

#include <algorithm>
#include <utility>

namespace raincast {

namespace {

bool isDescribedSize(const Bitmap& picture) {
    return picture && picture->size() == QSize(kRadarImageWidth, kRadarImageHeight);
}

// A minute for the server to make others, and one for the clocks.
constexpr FileTime kFreshWarnings = 2 * kFileTimePerMinute;

/// A part of a GIF would show as a frame with a dark lower half.
const FileKind kWholeGif{kGifFile.name, kGifFile.tellingBytes, kGifFile.isOne, true};

/// The path of a frame on its server; empty for a file that is not in its place in the cache. (A
/// page file may name any file.)
QString serverPath(const RadarFrame& frame, const RadarState& state) {
    const QString name = QFileInfo(frame.path).fileName();
    const QString product = ProductCode(state.product).toString();
    const auto time = frameTime(name);
    const bool isInPlace =
        time && name == frameFileName(state.siteId, *time, product) &&
        frame.path == siteCacheFolder(state.cacheRoot(), state.siteId) + u'/' + name;
    return isInPlace ? listingDirectory(state.siteId, product) + name : QString();
}

std::shared_ptr<SharpRecord> makeRecord(SharpSource source, const Bitmap& described, int detail) {
    return std::make_shared<SharpRecord>(SharpRecord{
        std::move(source), described->cacheKey(), detail});
}

} // namespace

SharpPictures::SharpPictures(Changed changed)
    : m_changed(std::move(changed)), m_layers([this] { m_changed(true); }) {}

void SharpPictures::follow(const RadarScene& scene, const Wish& wish) {
    use(wish.detail, scene.state);
    m_coming = m_loopComing = false;
    if (wish.detail == 1 || !wish.inView || scene.state.cacheFolder.isEmpty()) {
        return;
    }
    if (!m_queue || m_queue->servers() != scene.servers) {
        endQueue();
        if (std::exchange(m_knownOf, scene.servers) != scene.servers) {
            m_known = {};
        }
        m_queue = std::make_unique<SharpQueue>(
            scene.downloads, scene.servers, m_known, [this](bool came) { m_changed(came); }
        );
    }
    m_coming = m_queue->begin(onScreen(scene.state), wish.mayFetch);
    if (wish.mayFetch) {
        m_coming = m_layers.follow(scene, wish.detail, wish.lettersDetail, *m_queue) || m_coming;
    }
    m_loopComing = m_queue->begin(loop(scene.state), wish.mayFetch);
}

void SharpPictures::release() {
    m_queue.reset();
    m_frames.clear();
    m_warnings.reset();
    m_describedWarnings.reset();
    m_layers.release();
    m_unpacked = {};
    m_unpackedKey = 0;
    m_coming = m_loopComing = false;
}

void SharpPictures::use(int detail, const RadarState& state) {
    useDetail(detail);
    if (detail > 1 && !state.cacheFolder.isEmpty()) {
        takeFrames(state);
        takeWarnings(state);
    }
}

void SharpPictures::useDetail(int detail) {
    const int before = std::exchange(m_detail, detail);
    if (before > detail) {
        release();
    } else if (before < detail) {
        endQueue();
    }
}

// What it has begun does not come any more: all begins anew, with what is there already.
void SharpPictures::endQueue() {
    m_queue.reset();
    const auto begunAnew = [this](const Pointer& record) {
        SharpRecord next = *record;
        next.detail = m_detail;
        next.state = SharpRecord::State::unknown;
        return std::make_shared<SharpRecord>(std::move(next));
    };
    for (auto& [file, record] : m_frames) {
        record = begunAnew(record);
    }
    m_warnings = m_warnings ? begunAnew(m_warnings) : nullptr;
    m_layers.beginAnew();
}

void SharpPictures::tryAgain() {
    if (m_queue) {
        m_queue->tryAgain();
    }
}

// Keeps what is of frames that are still shown as they were.
void SharpPictures::takeFrames(const RadarState& state) {
    std::map<QString, Pointer> frames;
    for (const RadarFrame& frame : state.frames) {
        if (!isDescribedSize(frame.bitmap)) {
            continue;
        }
        const auto known = m_frames.find(frame.path);
        if (known != m_frames.end() && known->second->key == frame.bitmap->cacheKey()) {
            frames.insert(*known);
        } else if (const QString path = serverPath(frame, state); !path.isEmpty()) {
            frames[frame.path] = makeRecord({path, frame.path, kWholeGif}, frame.bitmap, m_detail);
        }
    }
    m_frames.swap(frames);
}

void SharpPictures::takeWarnings(const RadarState& state) {
    const Bitmap& picture = state.warnings.picture;
    if (warningsUse(state) != WarningsUse::drawn || !isDescribedSize(picture)) {
        m_warnings.reset();
        return;
    }
    const QString range = ProductRange(state.product).toString();
    const QString folder = siteCacheFolder(state.cacheRoot(), state.siteId);
    SharpSource source{
        warningsPath(state.siteId, range), folder + u'/' + warningsFileName(state.siteId),
        kWholeGif};
    source.use = SharpSource::Use::warnings;
    const bool isOfSame = m_warnings && m_warnings->source.path == source.path &&
                          m_warnings->source.file == source.file;
    const bool isKnown = isOfSame && m_warnings->key == picture->cacheKey();
    if (!isKnown && isOfSame && *m_describedWarnings == *picture) {
        m_warnings->key = picture->cacheKey(); // fetched again, and as before
    } else if (!isKnown) {
        m_warnings = makeRecord(std::move(source), picture, m_detail);
    }
    m_describedWarnings = picture;
    // The server has those of now. They would contradict the list and the frame of an hour ago.
    const FileTime age = Clock::current().now() - state.warnings.fetched;
    m_warnings->mayFetch = 0 <= age && age <= kFreshWarnings;
}

// The frame and its warnings.
SharpRecords SharpPictures::onScreen(const RadarState& state) const {
    SharpRecords records;
    if (const auto shown = m_frames.find(state.current.path); shown != m_frames.end()) {
        records.push_back(shown->second);
    }
    if (m_warnings) {
        records.push_back(m_warnings);
    }
    return records;
}

// From the frame on the screen on: those that are shown next come first.
SharpRecords SharpPictures::loop(const RadarState& state) const {
    SharpRecords records;
    for (const auto& [file, record] : m_frames) {
        records.push_back(record);
    }
    const auto next = m_frames.upper_bound(state.current.path);
    std::rotate(
        records.begin(), records.begin() + std::distance(m_frames.begin(), next), records.end()
    );
    return records;
}

int SharpPictures::detail() const {
    int finest = 1;
    for (const auto& [file, record] : m_frames) {
        finest = std::max(finest, record->picture.detail());
    }
    return std::max(finest, m_layers.detail());
}

DetailedBitmap SharpPictures::frame(const RadarFrame& described) {
    const auto found = m_frames.find(described.path);
    if (!described.bitmap || found == m_frames.end() ||
        found->second->key != described.bitmap->cacheKey() || !found->second->picture) {
        return described.bitmap;
    }
    if (m_unpackedKey != found->second->key ||
        m_unpacked.detail != found->second->picture.detail()) {
        m_unpacked = found->second->picture.unpacked();
        m_unpackedKey = found->second->key;
    }
    return m_unpacked ? m_unpacked : described.bitmap;
}

qint64 SharpPictures::keyOf(const RadarFrame& described) const {
    const auto found = m_frames.find(described.path);
    const bool isPacked = described.bitmap && found != m_frames.end() &&
                          found->second->key == described.bitmap->cacheKey() &&
                          found->second->picture.isPacked();
    return isPacked ? ~found->second->key : 0; // no picture's own key is negative
}

DetailedBitmap SharpPictures::warnings(const Bitmap& described) const {
    const bool isOf = m_warnings && described && m_warnings->key == described->cacheKey();
    return isOf && m_warnings->picture ? m_warnings->picture.unpacked() : described;
}

DetailedBitmap SharpPictures::ground(const Bitmap& described) const {
    return m_layers.ground(described);
}

DetailedBitmap SharpPictures::overlay(const Bitmap& described) const {
    return m_layers.overlay(described);
}

} // namespace raincast
